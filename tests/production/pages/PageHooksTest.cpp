#include "BlankPages.h"

#include <gtest/gtest.h>

using namespace tabulor;
using tabulor::test::writeBlankPages;

TEST(PageHooks, StackInOrderAndLastAsLongAsTheirHandles)
{
    PageDocument document;
    QStringList calls;
    PageHook first = document.addNewPageHook(
        [&](PageDocument& d) { calls << QStringLiteral("first %1").arg(d.PageCount()); });
    {
        const PageHook second = document.addNewPageHook(
            [&](PageDocument& d) { calls << QStringLiteral("second %1").arg(d.PageCount()); });
        const PageHook end =
            document.addEndDocHook([&](PageDocument&) { calls << QStringLiteral("end"); });
        writeBlankPages(document, 2);
    }
    EXPECT_EQ(calls, (QStringList{"first 1", "second 1", "first 2", "second 2", "end"}));

    // The handles of the second and end hooks are gone, and a moved handle keeps its hook.
    calls.clear();
    PageHook moved = std::move(first);
    writeBlankPages(document, 1);
    EXPECT_EQ(calls, QStringList{"first 1"});
    moved.remove();
    calls.clear();
    writeBlankPages(document, 1);
    EXPECT_TRUE(calls.isEmpty());
}

TEST(PageHooks, AHookMayStopTheDocumentAndRemoveAnotherWhileCalled)
{
    PageDocument document;
    int laterCalls = 0;
    PageHook later;
    const PageHook stopper = document.addNewPageHook([&](PageDocument& d) {
        if (d.PageCount() == 3) {
            d.stop();
            later.remove();
        }
    });
    later = document.addNewPageHook([&](PageDocument&) { ++laterCalls; });
    writeBlankPages(document, 10);
    EXPECT_TRUE(document.stopped());
    EXPECT_EQ(document.PageCount(), 3);
    EXPECT_EQ(laterCalls, 2); // pages 1 and 2: removed before it was reached on page 3
}

TEST(PageHooks, AHandleMayOutliveItsDocument)
{
    PageHook hook;
    {
        PageDocument document;
        hook = document.addEndDocHook([](PageDocument&) {});
    }
    hook.remove(); // nothing left to remove from
}
