// An owner of the X11 clipboard that answers as the test wants, well or badly, on a thread and a
// connection of its own.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <poll.h>
#include <thread>
#include <utility>
#include <xcb/xcb.h>

class PlayedOwner final {
public:
    struct Answer {
        QByteArray type;
        int bits = 8;
        QList<QByteArray> parts; // More than one go one after the other, and an empty one at last.
        bool isWritten = true; // Or only said to be.
        qsizetype diesAfter = -1; // Parts
    };
    struct Manners {
        QHash<QByteArray, Answer> answers; // By target; others are refused.
        bool tellsTargets = true;
        QList<QByteArray> unanswered = {}; // Targets
    };

    explicit PlayedOwner(Manners manners)
        : m_manners(std::move(manners))
    {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_x, 0, m_window, root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
            XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
        xcb_set_selection_owner(m_x, m_window, atom("CLIPBOARD"), XCB_CURRENT_TIME);
        // The answer shows that the selection is owned.
        atom("CLIPBOARD");
        m_thread = std::thread([this] { serve(); });
    }

    ~PlayedOwner()
    {
        m_isOver = true;
        m_thread.join();
        xcb_disconnect(m_x);
    }
    Q_DISABLE_COPY_MOVE(PlayedOwner)

    int requests() const { return m_requests; }

private:
    struct Transfer {
        Answer answer;
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        qsizetype sent = 0;
    };

    xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_x)).data->root; }

    xcb_atom_t atom(const QByteArray& name) const
    {
        const auto cookie
            = xcb_intern_atom(m_x, 0, static_cast<uint16_t>(name.size()), name.constData());
        auto* const reply = xcb_intern_atom_reply(m_x, cookie, nullptr);
        const auto atom = reply->atom;
        std::free(reply);
        return atom;
    }

    QByteArray name(xcb_atom_t atom) const
    {
        auto* const reply = xcb_get_atom_name_reply(m_x, xcb_get_atom_name(m_x, atom), nullptr);
        const QByteArray text(xcb_get_atom_name_name(reply), xcb_get_atom_name_name_length(reply));
        std::free(reply);
        return text;
    }

    void serve()
    {
        while (!m_isOver) {
            // Flushing may read events as well.
            xcb_flush(m_x);
            while (auto* const event = xcb_poll_for_event(m_x)) {
                handle(*event);
                std::free(event);
                xcb_flush(m_x);
            }
            pollfd waited { xcb_get_file_descriptor(m_x), POLLIN, 0 };
            ::poll(&waited, 1, 20);
        }
    }

    void handle(const xcb_generic_event_t& event)
    {
        const auto type = event.response_type & 0x7f;
        if (type == XCB_SELECTION_REQUEST)
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        if (type == XCB_PROPERTY_NOTIFY)
            proceed(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    }

    void answer(const xcb_selection_request_event_t& request)
    {
        ++m_requests;
        const auto target = name(request.target);
        if (m_manners.unanswered.contains(target))
            return;
        if (target == "TARGETS" && m_manners.tellsTargets) {
            tellTargets(request);
        } else if (const auto found = m_manners.answers.constFind(target);
                   found != m_manners.answers.constEnd()) {
            begin({ *found, request.requestor, request.property });
            notify(request, request.property);
        } else {
            notify(request, XCB_ATOM_NONE);
        }
    }

    void tellTargets(const xcb_selection_request_event_t& request)
    {
        QList<xcb_atom_t> targets { atom("TARGETS") };
        for (const auto& target : m_manners.answers.keys() + m_manners.unanswered)
            targets << atom(target);
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
            XCB_ATOM_ATOM, 32, static_cast<uint32_t>(targets.size()), targets.constData());
        notify(request, request.property);
    }

    void begin(const Transfer& transfer)
    {
        if (!transfer.answer.isWritten)
            return;
        if (transfer.answer.parts.size() == 1) {
            write(transfer, transfer.answer.parts.first());
            return;
        }
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_x, transfer.requestor, XCB_CW_EVENT_MASK, &mask);
        const uint32_t atLeast = 0;
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
            atom("INCR"), 32, 1, &atLeast);
        m_transfers[transfer.requestor] = transfer;
    }

    void proceed(const xcb_property_notify_event_t& change)
    {
        const auto found = m_transfers.find(change.window);
        if (found == m_transfers.end() || change.state != XCB_PROPERTY_DELETE)
            return;
        const auto part = found->sent++;
        if (part == found->answer.diesAfter) {
            xcb_destroy_window(m_x, m_window);
            m_transfers.erase(found);
        } else if (part <= found->answer.parts.size()) {
            write(*found, found->answer.parts.value(part));
        }
    }

    void write(const Transfer& transfer, const QByteArray& bytes)
    {
        const auto count = static_cast<uint32_t>(bytes.size() * 8 / transfer.answer.bits);
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
            atom(transfer.answer.type), static_cast<uint8_t>(transfer.answer.bits), count,
            bytes.constData());
    }

    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property)
    {
        xcb_selection_notify_event_t news {};
        news.response_type = XCB_SELECTION_NOTIFY;
        news.requestor = request.requestor;
        news.selection = request.selection;
        news.target = request.target;
        news.property = property;
        xcb_send_event(m_x, 0, request.requestor, 0, reinterpret_cast<const char*>(&news));
        xcb_flush(m_x);
    }

    Manners m_manners;
    QHash<xcb_window_t, Transfer> m_transfers; // By requestor.
    xcb_connection_t* m_x = xcb_connect(nullptr, nullptr);
    xcb_window_t m_window = xcb_generate_id(m_x);
    std::atomic<bool> m_isOver = false;
    std::atomic<int> m_requests = 0;
    std::thread m_thread;
};
