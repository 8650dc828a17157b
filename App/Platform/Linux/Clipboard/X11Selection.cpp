#include "App/Platform/Linux/Clipboard/X11Selection.h"

#include "App/Platform/Linux/Clipboard/ClipboardText.h"
#include "App/Platform/Linux/Clipboard/X11Conversation.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

using ClipboardText::Encoding;
using ClipboardText::Format;

constexpr auto answerProperty = "CORVELLA_TEXT";

struct Property {
    xcb_atom_t type = XCB_ATOM_NONE;
    int bits = 0; // A value; 0 where there is no such property.
    QByteArray bytes = {};
};

// Asks the owner of the clipboard, who answers through a property of a window made for that.
class SelectionReader final {
public:
    SelectionReader(X11Conversation& conversation, const char* selection)
        : m_conversation(conversation)
        , m_selection(selection)
        , m_x(conversation.connection())
    {
    }

    QString text()
    {
        learnAtoms();
        if (!findOwner())
            return {};
        makeWindow();
        for (const auto& format : offers()) {
            const auto target = atom(format.name);
            const auto property = converted(target);
            const auto encoding = property ? encodingOf(*property, target, format) : std::nullopt;
            if (encoding)
                return ClipboardText::decoded(property->bytes, *encoding);
        }
        return {};
    }

private:
    // Without one there is nothing to wait for; nor when it goes away later.
    bool findOwner()
    {
        const auto cookie = xcb_get_selection_owner(m_x, atom(m_selection));
        const auto reply = m_conversation.reply<xcb_get_selection_owner_reply_t>(cookie.sequence);
        m_owner = reply ? reply->owner : xcb_window_t { XCB_WINDOW_NONE };
        const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_x, m_owner, XCB_CW_EVENT_MASK, &mask);
        return m_owner != XCB_WINDOW_NONE;
    }

    void makeWindow()
    {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_x, 0, m_window, m_conversation.root(), 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    }

    // All at once: the server may be far away.
    void learnAtoms()
    {
        QList<const char*> names { m_selection, "TARGETS", "INCR", answerProperty };
        for (const auto& format : ClipboardText::formats)
            names << format.name;
        QList<xcb_intern_atom_cookie_t> asked;
        for (const auto* name : names) {
            const auto length = static_cast<uint16_t>(std::string_view(name).size());
            asked << xcb_intern_atom(m_x, 0, length, name);
        }
        for (qsizetype i = 0; i < names.size(); ++i) {
            const auto reply = m_conversation.reply<xcb_intern_atom_reply_t>(asked.at(i).sequence);
            m_atoms[names.at(i)] = reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
        }
    }

    xcb_atom_t atom(const char* name) const { return m_atoms.value(name); }

    // What to ask for, the best one first. Whoever does not tell what there is may still have text.
    QList<Format> offers()
    {
        const auto targets = converted(atom("TARGETS"));
        QList<Format> found;
        for (const auto& format : ClipboardText::formats) {
            if (!targets || targets->bits != 32 || holds(targets->bytes, atom(format.name)))
                found << format;
        }
        return found;
    }

    static bool holds(const QByteArray& atoms, xcb_atom_t wanted)
    {
        const auto* first = reinterpret_cast<const xcb_atom_t*>(atoms.constData());
        const auto count = static_cast<size_t>(atoms.size()) / sizeof(xcb_atom_t);
        return std::find(first, first + count, wanted) != first + count;
    }

    // The type says more than the target that was asked for; TEXT even leaves it to the owner.
    std::optional<Encoding> encodingOf(
        const Property& property, xcb_atom_t target, const Format& asked)
    {
        if (property.bits != 8)
            return std::nullopt;
        if (property.type == atom("UTF8_STRING"))
            return Encoding::utf8;
        if (property.type == XCB_ATOM_STRING)
            return asked.encoding == Encoding::utf8 ? Encoding::unsaid : Encoding::latin1;
        return property.type == target ? std::optional(asked.encoding) : std::nullopt;
    }

    // Nothing when the owner refuses, or the conversation is over.
    std::optional<Property> converted(xcb_atom_t target)
    {
        if (m_conversation.isOver())
            return std::nullopt;
        const auto property = atom(answerProperty);
        xcb_convert_selection(m_x, m_window, atom(m_selection), target, property, XCB_CURRENT_TIME);
        if (!isAnswered(target))
            return std::nullopt;
        m_conversation.renew();
        auto answer = taken(property);
        if (answer.type == atom("INCR"))
            answer = takenInParts(property);
        return m_conversation.isOver() ? std::nullopt : std::optional(std::move(answer));
    }

    bool isAnswered(xcb_atom_t target)
    {
        while (const auto event = nextEvent()) {
            if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY)
                continue;
            const auto* answer = reinterpret_cast<const xcb_selection_notify_event_t*>(event.get());
            if (answer->requestor == m_window && answer->target == target)
                return answer->property != XCB_ATOM_NONE;
        }
        return false;
    }

    // Each part is asked for by the removal of the one before; an empty one is the end.
    Property takenInParts(xcb_atom_t property)
    {
        Property whole;
        while (isChanged(property)) {
            const auto part = taken(property);
            if (part.bits == 0)
                continue;
            m_conversation.renew();
            if (part.bytes.isEmpty())
                return whole;
            const bool isFirst = whole.bits == 0;
            if (!isFirst && (part.type != whole.type || part.bits != whole.bits))
                return {};
            whole.type = part.type;
            whole.bits = part.bits;
            whole.bytes += part.bytes;
            if (whole.bytes.size() > ClipboardText::maximumSize)
                m_conversation.end();
        }
        return {};
    }

    bool isChanged(xcb_atom_t property)
    {
        while (const auto event = nextEvent()) {
            if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
                continue;
            const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            if (change->window == m_window && change->atom == property
                && change->state == XCB_PROPERTY_NEW_VALUE)
                return true;
        }
        return false;
    }

    // Reads the property and removes it. What is too long stays, and ends the conversation.
    Property taken(xcb_atom_t property)
    {
        constexpr uint32_t longest = ClipboardText::maximumSize / 4;
        const auto cookie = xcb_get_property(m_x, 1, m_window, property, XCB_ATOM_ANY, 0, longest);
        const auto reply = m_conversation.reply<xcb_get_property_reply_t>(cookie.sequence);
        if (!reply)
            return {};
        if (reply->bytes_after > 0)
            m_conversation.end();
        const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
        return { reply->type, reply->format,
            QByteArray(bytes, xcb_get_property_value_length(reply.get())) };
    }

    X11Conversation::Event nextEvent()
    {
        auto event = m_conversation.nextEvent();
        if (event && (event->response_type & 0x7f) == XCB_DESTROY_NOTIFY) {
            m_conversation.end();
            return m_conversation.nextEvent();
        }
        return event;
    }

    X11Conversation& m_conversation;
    const char* m_selection;
    xcb_connection_t* m_x;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
    xcb_window_t m_window = xcb_generate_id(m_x);
};

}

QString X11Selection::readText(QClipboard::Mode mode, X11Conversation& conversation)
{
    const char* selection = mode == QClipboard::Selection ? "PRIMARY" : "CLIPBOARD";
    return conversation.isOver() ? QString() : SelectionReader(conversation, selection).text();
}
