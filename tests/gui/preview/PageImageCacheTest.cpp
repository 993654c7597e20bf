#include "gui/preview/PageImageCache.h"

#include "KnownPages.h"

#include <gtest/gtest.h>

using namespace tabulor;
using tabulor::test::KnownPages;

// The picture's cache key changes whenever it is played back again.
TEST(PageImageCache, PlaysAPageBackOnlyWhenWhatIsShownIsNotKept)
{
    PageDocument document;
    KnownPages::write(document, 2);
    PageImageCache cache;
    const auto key = [&](int page, double dotsPerInch, qreal ratio, QRect visible) {
        const PageImageCache::Picture& picture =
            cache.picture(document.pages()[size_t(page - 1)], page, document.fonts(), dotsPerInch,
                          ratio, visible);
        EXPECT_TRUE(QRect(picture.origin, picture.image.deviceIndependentSize().toSize())
                        .contains(visible));
        return picture.image.cacheKey();
    };

    const qint64 whole = key(1, 96, 1, QRect(0, 0, 400, 300));
    EXPECT_EQ(cache.last().image.size(), pagePixels(KnownPages::kPaper, 96));
    EXPECT_EQ(key(1, 96, 1, QRect(100, 700, 400, 300)), whole) << "scrolling over the page";
    EXPECT_NE(key(2, 96, 1, QRect(100, 700, 400, 300)), whole) << "another page";
    const qint64 sharp = key(2, 96, 2, QRect(0, 0, 400, 300));
    EXPECT_EQ(cache.last().image.size(), pagePixels(KnownPages::kPaper, 96) * 2);
    cache.invalidate();
    EXPECT_NE(key(2, 96, 2, QRect(0, 0, 400, 300)), sharp) << "the document was written again";

    // At 400% on a screen of twice the pixels, only a part around what is shown is kept.
    const QSize page = pagePixels(KnownPages::kPaper, 384);
    const qint64 part = key(1, 384, 2, QRect(1000, 1000, 400, 300));
    const QSize kept = cache.last().image.deviceIndependentSize().toSize();
    EXPECT_LT(kept.width() * kept.height(), page.width() * page.height() / 4);
    EXPECT_EQ(key(1, 384, 2, QRect(1040, 1080, 400, 300)), part) << "scrolling a little";
    EXPECT_NE(key(1, 384, 2, QRect(page.width() - 400, page.height() - 300, 400, 300)), part);
    EXPECT_TRUE(QRect(QPoint(0, 0), page)
                    .contains(QRect(cache.last().origin,
                                    cache.last().image.deviceIndependentSize().toSize())))
        << "what is kept stays on the page";
}
