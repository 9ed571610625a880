#include "core/AppModule/MessageLoop.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Window.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

// Writes what it sees into a common diary.
struct TDiary {
    std::string str;
};

class CFilter : public IMessageFilter {
public:
    CFilter(TDiary& diary, char ch, bool bConsume = false) : m_diary(diary), m_ch(ch), m_bConsume(bConsume) {}
    bool PreTranslateMessage(const TMessage&) override {
        m_diary.str += m_ch;
        if (m_pLoop) m_pLoop->RemoveMessageFilter(this);
        return m_bConsume;
    }
    CMessageLoop* m_pLoop = nullptr; ///< leave it when called

private:
    TDiary& m_diary;
    char m_ch;
    bool m_bConsume;
};

class CIdle : public IIdleHandler {
public:
    CIdle(TDiary& diary, int nWanted) : m_diary(diary), m_nWanted(nWanted) {}
    bool OnIdle(int nCount) override {
        m_diary.str += std::to_string(nCount);
        return nCount < m_nWanted;
    }

private:
    TDiary& m_diary;
    int m_nWanted;
};

// Plays a text: each letter is posted when the queue runs dry, '!' ends the session.
class CScriptPump : public IEventPump {
public:
    CScriptPump(CMessageQueue& queue, std::string str, TDiary& diary)
        : m_queue(queue), m_str(std::move(str)), m_diary(diary) {}
    bool Pump(bool bWait) override {
        if (!bWait) return true;
        const char ch = m_str.front();
        m_str.erase(0, 1);
        m_diary.str += ch;
        if (ch == '!') m_queue.PostQuit();
        if (ch == '?') return false;
        if (ch == 'm') m_queue.Post({nullptr, EMessage::MouseMove});
        if (ch == 'k') m_queue.Post({nullptr, EMessage::KeyDown});
        return true;
    }

private:
    CMessageQueue& m_queue;
    std::string m_str;
    TDiary& m_diary;
};

std::string Play(const std::string& strScript, int nIdleWanted, CMessageLoop& loop, TDiary& diary) {
    CMessageQueue queue;
    CScriptPump pump(queue, strScript, diary);
    queue.SetPump(&pump);
    CIdle idle(diary, nIdleWanted);
    loop.AddIdleHandler(&idle);
    loop.Run(queue);
    loop.Clear();
    return diary.str;
}

} // namespace

TEST(MessageLoop, IdleRunsWhenNothingWaitsAndAgainAfterWhatMatters) {
    TDiary diary;
    CMessageLoop loop;
    // Idle passes 0 1 2 at first; a mouse move wakes nothing; a key starts over; a failing wait is asked
    // again.
    EXPECT_EQ(Play("mk?!", 2, loop, diary), "012mk012?!");
}

TEST(MessageLoop, FiltersComeFromTheLastToTheFirst) {
    TDiary diary;
    CMessageLoop loop;
    CFilter first(diary, 'A');
    CFilter second(diary, 'B', true);
    CFilter third(diary, 'C');
    for (CFilter* p : {&first, &second, &third}) loop.AddMessageFilter(p);
    EXPECT_EQ(Play("k!", 0, loop, diary), "0kCB0!"); // B consumes, A never sees it
    // A filter may leave while it is called.
    diary.str.clear();
    CFilter leaver(diary, 'L');
    leaver.m_pLoop = &loop;
    loop.AddMessageFilter(&first);
    loop.AddMessageFilter(&leaver);
    EXPECT_EQ(Play("kk!", 0, loop, diary), "0kLA0kA0!");
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
    EXPECT_TRUE(queue.Peek());
    EXPECT_EQ(queue.Get(msg), 1);
    EXPECT_EQ(msg.wParam, 1);
    EXPECT_EQ(queue.Get(msg), 1); // the end comes after everything that was posted
    EXPECT_EQ(msg.wParam, 2);
    EXPECT_TRUE(queue.Peek());
    EXPECT_EQ(queue.Get(msg), 0);
    EXPECT_FALSE(queue.Peek()); // the next session starts clean
    EXPECT_EQ(queue.Get(msg), -1);
}

TEST(AppModule, EachThreadHasItsLoop) {
    CAppModule module;
    EXPECT_TRUE(module.AddMessageLoop(boost::make_shared<CMessageLoop>()));
    const auto spSecond = boost::make_shared<CMessageLoop>();
    module.AddMessageLoop(spSecond); // replaces what an abandoned session left
    EXPECT_EQ(module.GetMessageLoop(), spSecond);
    std::thread([&] {
        EXPECT_FALSE(module.GetMessageLoop());
        module.RemoveMessageLoop();
    }).join();
    EXPECT_EQ(module.GetMessageLoop(), spSecond);
    module.RemoveMessageLoop();
    EXPECT_FALSE(module.GetMessageLoop());
}
