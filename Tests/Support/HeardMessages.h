#pragma once

#include "ZmMath.h"

#include <string>
#include <vector>

/// A message as a listener received it.
struct HeardMessage {
    std::string listener, file, text;
    int module, level, line;
};

/// While it lives, listeners record their messages in one common list. Listeners are created by name.
class HeardMessages {
public:
    HeardMessages()
    {
        s_Messages = this;
        ZmLog::GetLog().RegisterListenerFactory(kType, Listener::Make);
    }
    ~HeardMessages()
    {
        for (const std::string& name : m_Names) {
            ZmLog::GetLog().UnregisterListener(name.c_str());
        }
        s_Messages = nullptr;
    }
    HeardMessages(const HeardMessages&) = delete;
    HeardMessages& operator=(const HeardMessages&) = delete;

    /// Creates a listener of that name for the module.
    ZmLogListener* Listen(const char* name, int module)
    {
        m_Names.push_back(name);
        return ZmLog::GetLog().RegisterListener(kType, name, module);
    }

    /// The messages since the last call.
    std::vector<HeardMessage> Take()
    {
        std::vector<HeardMessage> taken;
        taken.swap(m_Heard);
        return taken;
    }

    /// Called by each listener for each message, after recording it.
    void (*m_Answer)(const HeardMessage& message) = nullptr;
    int m_Destroyed = 0;

    static constexpr XGUID kType = {0x48454152, 0x4D455353};

private:
    class Listener : public ZmLogListener {
    public:
        static ZmLogListener* Make(const char* name) { return new Listener(name); }
        ~Listener() override { s_Messages->m_Destroyed += 1; }
        const XGUID& GetGuid() const override { return kType; }
        void Output(int module, int level, int line, const char* file, const char* text) override
        {
            const HeardMessage message = {GetName().Text(), file, text, module, level, line};
            s_Messages->m_Heard.push_back(message);
            if (s_Messages->m_Answer != nullptr) {
                s_Messages->m_Answer(message);
            }
        }

    private:
        explicit Listener(const char* name) : ZmLogListener(name) {}
    };

    static inline HeardMessages* s_Messages = nullptr;

    std::vector<HeardMessage> m_Heard;
    std::vector<std::string> m_Names;
};
