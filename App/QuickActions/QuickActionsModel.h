// What the Actions tab works on: a text from the clipboard, the last result, and the models that
// can rewrite the text.
#pragma once

#include "App/Core/Model.h"

#include <QStringList>

#include <memory>

class Clipboard;
class HttpClient;

namespace Ollama {
struct Error;
}

class QuickActionsModel final : public Model {
    Q_OBJECT

public:
    QuickActionsModel(Clipboard& clipboard, HttpClient& client);

    QString input() const { return m_input; }
    QString output() const { return m_output; }
    QString status() const { return m_status; } // Empty: there is nothing to say.
    QStringList models() const { return m_models; } // The names, in the server's order.
    QString model() const { return m_model; } // One of the models, or empty.
    bool ollamaDown() const { return m_ollamaDown; } // At the last attempt.
    bool busy() const { return m_busy; } // A rewrite is under way.

    bool canTransform() const { return !m_input.isEmpty(); }
    bool canRewrite() const;
    bool canCopy() const { return !m_output.isEmpty(); }

    void setInput(const QString& input); // In place of what is still being read, too.
    void setModel(const QString& model);

    void readClipboard();
    void loadModels();

    void summarize();
    void fixSpacingAndCase();
    void bullets();
    void count();
    void rewrite(); // Only while that can be done.
    void copy();

private:
    void adoptModels(const QStringList& models);
    void forgetModels();
    void rewriteFailed(const Ollama::Error& error);

    Clipboard& m_clipboard;
    HttpClient& m_client;
    std::unique_ptr<QObject> m_reading; // Waits for the clipboard.

    QString m_input;
    QString m_output;
    QString m_status;
    QStringList m_models;
    QString m_model;
    bool m_ollamaDown = false;
    bool m_busy = false;
};
