#include "core/AppModule/MessageLoop.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Window.h"

#include <thread>

namespace {

// A loop whose events, idle work and filters write into one diary.
class MessageLoop : public testing::Test, protected IEventPump, protected IIdleHandler {
protected:
    // Of the filters B consumes, and L leaves when it is called.
    struct CFilter : IMessageFilter {
        CFilter(MessageLoop& test, char ch) : m_test(test), m_ch(ch) { test.m_loop.AddMessageFilter(this); }
        bool PreTranslateMessage(const TMessage&) override {
            m_test.m_strDiary += m_ch;
            if (m_ch == 'L') m_test.m_loop.RemoveMessageFilter(this);
            return m_ch == 'B';
        }
        MessageLoop& m_test;
        char m_ch;
    };

    // Each letter of the text is an event when the queue runs dry; idle work asks for so many more passes.
    std::string Play(const std::string& strScript, int nIdleWanted) {
        m_strScript = strScript;
        m_nIdleWanted = nIdleWanted;
        m_strDiary.clear();
        m_queue.SetPump(this);
        m_loop.AddIdleHandler(this);
        m_loop.Run(m_queue);
        m_loop.Clear();
        return m_strDiary;
    }
    bool Pump(bool bWait) override {
        if (!bWait) return true;
        const char ch = m_strScript.front();
        m_strScript.erase(0, 1);
        m_strDiary += ch;
        if (ch == '!') m_queue.PostQuit();
        if (ch == 'm') m_queue.Post({nullptr, EMessage::MouseMove});
        if (ch == 'k') m_queue.Post({nullptr, EMessage::KeyDown});
        return ch != '?';
    }
    bool OnIdle(int nCount) override {
        m_strDiary += std::to_string(nCount);
        return nCount < m_nIdleWanted;
    }

    CMessageLoop m_loop;
    CMessageQueue m_queue;
    std::string m_strScript, m_strDiary;
    int m_nIdleWanted = 0;
};

} // namespace

TEST_F(MessageLoop, IdleRunsWhenNothingWaitsAndAgainAfterWhatMatters) {
    // Passes 0 1 2 at first; a mouse move wakes nothing; a key starts over; a failing wait is asked again.
    EXPECT_EQ(Play("mk?!", 2), "012mk012?!");
}

TEST_F(MessageLoop, FiltersComeFromTheLastToTheFirst) {
    {
        CFilter first(*this, 'A'), second(*this, 'B'), third(*this, 'C');
        EXPECT_EQ(Play("k!", 0), "0kCB0!");
    }
    CFilter first(*this, 'A'), leaver(*this, 'L');
    EXPECT_EQ(Play("kk!", 0), "0kLA0kA0!");
}

TEST(MessageQueue, KeepsOrderEndsOnceAndForgetsTheDead) {
    CMessageQueue queue;
    auto* const pDead = reinterpret_cast<IWindow*>(alignof(std::max_align_t));
    queue.Post({pDead, EMessage::Timer});
    queue.Post({nullptr, EMessage::Command, 1});
    queue.PostQuit();
    queue.Post({nullptr, EMessage::Command, 2});
    queue.Forget(pDead);
    TMessage msg;
    for (const int n : {1, 2}) { // the end comes after everything that was posted
        EXPECT_EQ(queue.Get(msg), 1);
        EXPECT_EQ(msg.wParam, n);
    }
    EXPECT_TRUE(queue.Peek());
    EXPECT_EQ(queue.Get(msg), 0);
    EXPECT_FALSE(queue.Peek()); // the next session starts clean
    EXPECT_EQ(queue.Get(msg), -1);
}
