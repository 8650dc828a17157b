#include "App/QuickActions/QuickActionsModel.h"

#include "App/Platform/Clipboard.h"
#include "App/QuickActions/Ollama.h"
#include "App/QuickActions/TextTools.h"

using namespace Qt::StringLiterals;

namespace {

bool meansDown(const Ollama::Error& error)
{
    using Kind = TransportError::Kind;
    return error.transport && *error.transport != Kind::other;
}

}

QuickActionsModel::QuickActionsModel(Clipboard& clipboard, HttpClient& client)
    : m_clipboard(clipboard)
    , m_client(client)
{
}

bool QuickActionsModel::canRewrite() const
{
    return !m_input.isEmpty() && !m_model.isEmpty() && !m_busy;
}

void QuickActionsModel::setInput(const QString& input)
{
    m_reading.reset();
    publish(m_input, input);
}

void QuickActionsModel::setModel(const QString& model)
{
    publish(m_model, model);
}

void QuickActionsModel::readClipboard()
{
    m_reading = std::make_unique<QObject>();
    m_clipboard.readText(QClipboard::Clipboard, m_reading.get(), [this](const QString& text) {
        publish(m_input, text);
        publish(m_status, text.isEmpty() ? u"Clipboard has no text"_s : QString());
    });
}

void QuickActionsModel::loadModels()
{
    Ollama::models(m_client, this, [this](const Result<QStringList, Ollama::Error>& result) {
        if (const auto* models = std::get_if<QStringList>(&result))
            adoptModels(*models);
        else
            forgetModels();
    });
}

void QuickActionsModel::adoptModels(const QStringList& models)
{
    publish(m_models, models);
    publish(m_ollamaDown, false);
    if (!models.contains(m_model))
        publish(m_model, models.value(0));
    if (models.isEmpty()) {
        publish(m_status, u"Ollama is running but has no models. Try: ollama pull llama3.2"_s);
    }
}

void QuickActionsModel::forgetModels()
{
    publish(m_models, {});
    publish(m_model, {});
    publish(m_ollamaDown, true);
}

void QuickActionsModel::summarize()
{
    publish(m_output, TextTools::summarize(m_input));
}

void QuickActionsModel::fixSpacingAndCase()
{
    publish(m_output, TextTools::fixSpacingAndCase(m_input));
}

void QuickActionsModel::bullets()
{
    publish(m_output, TextTools::bullets(m_input));
}

void QuickActionsModel::count()
{
    publish(m_output, TextTools::count(m_input));
}

void QuickActionsModel::rewrite()
{
    if (!canRewrite())
        return;
    publish(m_busy, true);
    publish(m_status, {});
    Ollama::rewrite(
        m_client, m_input, m_model, this, [this](const Result<QString, Ollama::Error>& result) {
            if (const auto* text = std::get_if<QString>(&result)) {
                publish(m_output, *text);
                publish(m_ollamaDown, false);
            } else {
                rewriteFailed(std::get<Ollama::Error>(result));
            }
            publish(m_busy, false);
        });
}

void QuickActionsModel::rewriteFailed(const Ollama::Error& error)
{
    if (meansDown(error))
        forgetModels();
    else
        publish(m_status, u"Rewrite failed: "_s + error.description);
}

void QuickActionsModel::copy()
{
    m_clipboard.setText(m_output);
    publish(m_status, u"Copied to clipboard"_s);
}
