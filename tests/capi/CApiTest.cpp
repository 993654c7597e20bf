// The C interface as a host sees it. These tests make no Qt application of their own, as a C
// host makes none: the library makes its own.
#include <tabulor/tabulor.h>

#include "PdfCheck.h"
#include "TestSupport.h"

#include "production/pages/PageSetup.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <tuple>

using namespace tabulor;
using namespace tabulor::test;

namespace {

class CApi : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // No user settings reach the reports.
        qputenv("TABULOR_SETTINGS", QFile::encodeName(dir.filePath(QStringLiteral("none.ini"))));
        ASSERT_EQ(tabulor_component_create(&component), TABULOR_OK) << tabulor_last_error(nullptr);
        ASSERT_EQ(tabulor_document_create(&document), TABULOR_OK) << tabulor_last_error(nullptr);
    }

    void TearDown() override
    {
        tabulor_document_destroy(document);
        tabulor_component_destroy(component);
    }

    int32_t pageCount() const
    {
        int32_t pages = -1;
        EXPECT_EQ(tabulor_document_page_count(document, &pages), TABULOR_OK);
        return pages;
    }

    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
    QByteArray sample() const { return samplePath(QStringLiteral("sales_by_region.vrd")).toUtf8(); }

    QTemporaryDir dir;
    tabulor_component* component = nullptr;
    tabulor_document* document = nullptr;
};

// Orders held by a host in C++ arrays, read through the callback table.
struct HostOrders
{
    struct Order
    {
        const char* texts[4]; // region, country, customer, order date
        int id;
        int64_t sales;
    };
    std::array<Order, 3> orders{{
        {{"East", "Latvia", "Daugava Ropewalk", "2024-02-01"}, 71, 1000000},
        {{"East", "Latvia", "Daugava Ropewalk", "2024-02-09"}, 72, 2500000},
        {{"East", "Estonia", "Tallinn Tar Works", "2024-03-15"}, 73, 125000},
    }};
    int position = 0;
    int releases = 0;

    static HostOrders& of(void* data) { return *static_cast<HostOrders*>(data); }

    // The fields of the sample's record source: Region, Country, Customer (Text), OrderID
    // (Long), OrderDate (Date), OrderYear (Long), Sales (Currency).
    tabulor_recordset_callbacks callbacks()
    {
        tabulor_recordset_callbacks table = {};
        table.struct_size = sizeof table;
        table.user_data = this;
        table.field_count = [](void*) -> int32_t { return 7; };
        table.field_name = [](void*, int32_t field) -> const char* {
            static const char* const names[] = {"Region",    "Country",   "Customer", "OrderID",
                                                "OrderDate", "OrderYear", "Sales"};
            return field >= 0 && field < 7 ? names[field] : nullptr;
        };
        table.field_type = [](void*, int32_t field) -> int32_t {
            static const int32_t types[] = {10, 10, 10, 4, 8, 4, 5};
            return field >= 0 && field < 7 ? types[field] : 0;
        };
        table.move_first = [](void* data) -> int32_t {
            of(data).position = 0;
            return 1;
        };
        table.move_next = [](void* data) -> int32_t {
            ++of(data).position;
            return 1;
        };
        table.eof = [](void* data) -> int32_t { return of(data).position >= 3; };
        table.value = [](void* data, int32_t field, tabulor_value* value) -> int32_t {
            const Order& order = of(data).orders.at(size_t(of(data).position));
            if (field == 3 || field == 5) {
                value->kind = TABULOR_VALUE_INTEGER;
                value->integer = field == 3 ? order.id : 2024;
            } else if (field == 6) {
                value->kind = TABULOR_VALUE_CURRENCY;
                value->integer = order.sales;
            } else {
                value->kind = field == 4 ? TABULOR_VALUE_DATE : TABULOR_VALUE_TEXT;
                value->text = order.texts[field == 4 ? 3 : field];
                value->size = TABULOR_ZERO_TERMINATED;
            }
            return 1;
        };
        table.release = [](void* data) { ++of(data).releases; };
        return table;
    }
};

} // namespace

TEST_F(CApi, PropertiesStartAtTheirDefaultsAndKeepWhatIsSet)
{
    tabulor_component* fresh = nullptr;
    ASSERT_EQ(tabulor_component_create(&fresh), TABULOR_OK);
    int show = -1, toolbar = -1, layout = -1;
    int32_t mode = -1;
    EXPECT_EQ(tabulor_get_show_tabulor(fresh, &show), TABULOR_OK);
    EXPECT_EQ(tabulor_get_allow_toolbar(fresh, &toolbar), TABULOR_OK);
    EXPECT_EQ(tabulor_get_show_layout_window(fresh, &layout), TABULOR_OK);
    EXPECT_EQ(tabulor_get_access_mode(fresh, &mode), TABULOR_OK);
    EXPECT_EQ(std::tuple(show, toolbar, layout, mode), std::tuple(1, 1, 0, TABULOR_USE));

    // Any nonzero value is true, and reads back as 1; an access mode outside the enumeration
    // is kept as it is.
    EXPECT_EQ(tabulor_set_show_tabulor(fresh, 0), TABULOR_OK);
    EXPECT_EQ(tabulor_set_allow_toolbar(fresh, 0), TABULOR_OK);
    EXPECT_EQ(tabulor_set_show_layout_window(fresh, -1), TABULOR_OK);
    EXPECT_EQ(tabulor_set_access_mode(fresh, 3), TABULOR_OK);
    tabulor_get_show_tabulor(fresh, &show);
    tabulor_get_allow_toolbar(fresh, &toolbar);
    tabulor_get_show_layout_window(fresh, &layout);
    tabulor_get_access_mode(fresh, &mode);
    EXPECT_EQ(std::tuple(show, toolbar, layout, mode), std::tuple(0, 0, 1, 3));
    EXPECT_STREQ(tabulor_last_error(fresh), "");
    tabulor_component_destroy(fresh);

    int overlay = -1;
    EXPECT_EQ(tabulor_document_get_overlay_headers(document, &overlay), TABULOR_OK);
    EXPECT_EQ(overlay, 0);
    tabulor_document_set_overlay_headers(document, 7);
    tabulor_document_get_overlay_headers(document, &overlay);
    EXPECT_EQ(overlay, 1);
    EXPECT_EQ(pageCount(), 0);
    EXPECT_STREQ(tabulor_version(), "6.0.1");
}

TEST_F(CApi, NullHandlesAndPlacesAreRefusedWithAReason)
{
    int flag = 0;
    int32_t number = 0;
    const std::vector<std::function<int()>> calls = {
        [] { return tabulor_component_create(nullptr); },
        [] { return tabulor_document_create(nullptr); },
        [] { return tabulor_set_show_tabulor(nullptr, 1); },
        [&] { return tabulor_get_show_tabulor(nullptr, &flag); },
        [] { return tabulor_set_allow_toolbar(nullptr, 1); },
        [&] { return tabulor_get_allow_toolbar(nullptr, &flag); },
        [] { return tabulor_set_show_layout_window(nullptr, 1); },
        [&] { return tabulor_get_show_layout_window(nullptr, &flag); },
        [] { return tabulor_set_access_mode(nullptr, 1); },
        [&] { return tabulor_get_access_mode(nullptr, &number); },
        [] { return tabulor_set_echo_messages(nullptr, 1); },
        [] { return tabulor_document_set_overlay_headers(nullptr, 1); },
        [&] { return tabulor_document_get_overlay_headers(nullptr, &flag); },
        [&] { return tabulor_document_page_count(nullptr, &number); },
        [] { return tabulor_document_save_pdf(nullptr, "x.pdf"); },
        [] { return tabulor_document_save_png(nullptr, "x.png", 96, 1, 0); },
        [&] { return tabulor_do_report(nullptr, sample().constData(), document, nullptr); },
    };
    for (size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i](), TABULOR_ERROR_ARGUMENT) << "call " << i;
        EXPECT_TRUE(QByteArray(tabulor_last_error(nullptr)).startsWith("no ")) << "call " << i;
    }
    EXPECT_STREQ(tabulor_document_last_error(nullptr), tabulor_last_error(nullptr));

    // A missing place for a value is the handle's own error.
    EXPECT_EQ(tabulor_get_access_mode(component, nullptr), TABULOR_ERROR_ARGUMENT);
    EXPECT_STREQ(tabulor_last_error(component), "no place for the value was given (NULL)");
    EXPECT_EQ(tabulor_document_page_count(document, nullptr), TABULOR_ERROR_ARGUMENT);
    EXPECT_EQ(tabulor_document_save_pdf(document, nullptr), TABULOR_ERROR_ARGUMENT);
    EXPECT_STREQ(tabulor_document_last_error(document), "no file name was given (NULL)");

    tabulor_component_destroy(nullptr);
    tabulor_document_destroy(nullptr);
}

TEST_F(CApi, AnUnreadableDefinitionIsTheLastErrorAndRendersNothing)
{
    const QString missing = path("missing.vrd");
    EXPECT_EQ(tabulor_do_report(component, missing.toUtf8().constData(), document, nullptr),
              TABULOR_ERROR_DEFINITION);
    EXPECT_EQ(QString::fromUtf8(tabulor_last_error(component)),
              QStringLiteral("Invalid Data File, please try another.\n'%1'").arg(missing));

    const QString garbage = path("garbage.vrd");
    writeBytes(garbage, QByteArray("\x00\xff[General]\nVersion", 18));
    tabulor_set_echo_messages(component, 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(tabulor_do_report(component, garbage.toUtf8().constData(), document, nullptr),
              TABULOR_ERROR_DEFINITION);
    const std::string echoed = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(QByteArray(tabulor_last_error(component)).contains(garbage.toUtf8()));
    EXPECT_NE(echoed.find("Invalid Data File, please try another."), std::string::npos);
    EXPECT_EQ(pageCount(), 0);

    // The next call that succeeds clears it.
    EXPECT_EQ(tabulor_do_report(component, nullptr, nullptr, nullptr), TABULOR_OK);
    EXPECT_STREQ(tabulor_last_error(component), "");
}

TEST_F(CApi, RendersTheSampleFromItsDatabaseAndSavesPdfAndPng)
{
    tabulor_document_set_overlay_headers(document, 1);
    ASSERT_EQ(tabulor_do_report(component, sample().constData(), document, nullptr), TABULOR_OK)
        << tabulor_last_error(component);
    const int32_t pages = pageCount();
    ASSERT_GT(pages, 1);

    const QString pdf = path("sample.pdf");
    ASSERT_EQ(tabulor_document_save_pdf(document, pdf.toUtf8().constData()), TABULOR_OK)
        << tabulor_document_last_error(document);
    EXPECT_EQ(pdfPageCount(pdf), pages);
    const QString first = pdfText(pdf, 1);
    EXPECT_TRUE(first.contains(QStringLiteral("Sales by Region, "))) << first.toStdString();
    EXPECT_TRUE(first.contains(QStringLiteral("Page 1 of %1").arg(pages)));

    ASSERT_EQ(
        tabulor_document_save_png(document, path("page-%d.png").toUtf8().constData(), 30, 2, 3),
        TABULOR_OK)
        << tabulor_document_last_error(document);
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral("page-*.png")}),
              QStringList({QStringLiteral("page-2.png"), QStringLiteral("page-3.png")}));
    const QSizeF paper = PageSetup::localePaper();
    EXPECT_EQ(QImage(path("page-3.png")).size(),
              QSize(int(std::lround(paper.width() * 30 / 1440)),
                    int(std::lround(paper.height() * 30 / 1440))));

    // Without the overlay a host's document gets no page headers.
    tabulor_document* plain = nullptr;
    ASSERT_EQ(tabulor_document_create(&plain), TABULOR_OK);
    ASSERT_EQ(tabulor_do_report(component, sample().constData(), plain, nullptr), TABULOR_OK);
    ASSERT_EQ(tabulor_document_save_pdf(plain, path("plain.pdf").toUtf8().constData()), TABULOR_OK);
    EXPECT_FALSE(pdfText(path("plain.pdf"), 1).contains(QStringLiteral("Page 1 of")));
    tabulor_document_destroy(plain);
}

TEST_F(CApi, ReadsTheHostsRowsThroughItsCallbacksAndReleasesThem)
{
    HostOrders host;
    tabulor_recordset_callbacks table = host.callbacks();
    ASSERT_EQ(tabulor_do_report(component, sample().constData(), document, &table), TABULOR_OK)
        << tabulor_last_error(component);
    EXPECT_EQ(host.releases, 1);
    ASSERT_EQ(pageCount(), 1);
    ASSERT_EQ(tabulor_document_save_pdf(document, path("host.pdf").toUtf8().constData()),
              TABULOR_OK);
    const QString text = pdfText(path("host.pdf"));
    EXPECT_TRUE(text.contains(QStringLiteral("Daugava Ropewalk"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Tallinn Tar Works")));
    EXPECT_TRUE(text.contains(QStringLiteral("362.50"))); // the sales of the region East

    // A table too short to hold the functions up to value is refused before it is used.
    table.struct_size = offsetof(tabulor_recordset_callbacks, eof);
    EXPECT_EQ(tabulor_do_report(component, sample().constData(), document, &table),
              TABULOR_ERROR_ARGUMENT);
    EXPECT_TRUE(QByteArray(tabulor_last_error(component)).contains("recordset table"));
    EXPECT_EQ(host.releases, 1);
    EXPECT_EQ(pageCount(), 1);
}

TEST_F(CApi, SavingChecksItsArgumentsAndLeavesNoFileWhenItFails)
{
    EXPECT_EQ(tabulor_document_save_pdf(document, path("early.pdf").toUtf8().constData()),
              TABULOR_ERROR_OUTPUT);
    EXPECT_STREQ(tabulor_document_last_error(document),
                 "the document has no pages; render a report into it first");

    ASSERT_EQ(tabulor_do_report(component, sample().constData(), document, nullptr), TABULOR_OK);
    const int32_t pages = pageCount();
    const QByteArray pattern = path("p-%d.png").toUtf8();
    EXPECT_EQ(tabulor_document_save_png(document, pattern.constData(), 9, 1, 1),
              TABULOR_ERROR_ARGUMENT);
    EXPECT_EQ(tabulor_document_save_png(document, pattern.constData(), 30, 0, 1),
              TABULOR_ERROR_ARGUMENT);
    EXPECT_EQ(tabulor_document_save_png(document, pattern.constData(), 30, 1, pages + 1),
              TABULOR_ERROR_ARGUMENT);
    EXPECT_EQ(QString::fromUtf8(tabulor_document_last_error(document)),
              QStringLiteral("pages 1 to %1 are not in the document, which has %2")
                  .arg(pages + 1)
                  .arg(pages));

    const QByteArray unnumbered = path("all.png").toUtf8();
    EXPECT_EQ(tabulor_document_save_png(document, unnumbered.constData(), 30, 1, 0),
              TABULOR_ERROR_OUTPUT);
    EXPECT_TRUE(QByteArray(tabulor_document_last_error(document)).contains("%d"));
    const QByteArray nowhere = path("no/such/folder/report.pdf").toUtf8();
    EXPECT_EQ(tabulor_document_save_pdf(document, nowhere.constData()), TABULOR_ERROR_OUTPUT);
    EXPECT_TRUE(
        QByteArray(tabulor_document_last_error(document)).startsWith("cannot write '" + nowhere));

    // A single page needs no number in its name.
    EXPECT_EQ(tabulor_document_save_png(document, unnumbered.constData(), 30, 2, 2), TABULOR_OK);
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral("*.png"), QStringLiteral("*.pdf")}),
              QStringList({QStringLiteral("all.png")}));
}
