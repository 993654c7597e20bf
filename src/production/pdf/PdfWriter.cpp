#include "production/pdf/PdfWriter.h"

#include "production/pdf/PdfContent.h"
#include "production/pdf/PdfOutput.h"
#include "production/pdf/PdfText.h"

#include <QCryptographicHash>

#include <cmath>
#include <vector>

namespace tabulor {

namespace {

constexpr double kMaxPageSize = 200 * 1440; // twips

} // namespace

struct PdfWriter::Impl
{
    PdfOutput out;
    PdfText text{out};
    PdfContent content{text};
    QString title;
    QString error;
    bool started = false; // a writer writes one document
    bool opened = false;
    int catalog = 0;
    int pageTree = 0;
    int info = 0;
    int resources = 0;
    struct Page
    {
        int object;
        int overlay; // reserved when the page is written
        bool overlaid;
    };
    std::vector<Page> pages;

    bool failed() const { return out.failed() || !text.errorString().isEmpty(); }
    QString failure() const { return out.failed() ? out.errorString() : text.errorString(); }
};

PdfWriter::PdfWriter() : d(std::make_unique<Impl>()) {}

PdfWriter::~PdfWriter() = default;

bool PdfWriter::open(const QString& path, QString* error)
{
    if (d->started) {
        if (error)
            *error = QStringLiteral("This PDF writer has been given its file already.");
        return false;
    }
    d->started = true;
    if (!d->out.open(path, error))
        return false;
    d->opened = true;
    d->catalog = d->out.reserve();
    d->pageTree = d->out.reserve();
    d->info = d->out.reserve();
    d->resources = d->out.reserve();
    return true;
}

void PdfWriter::begin(const QString& title)
{
    d->title = title;
}

int PdfWriter::addPage(const PageDisplayList& page)
{
    if (!d->opened || d->failed())
        return -1;
    // PDF viewers take pages up to 200 inches a side.
    const QSizeF size = page.size;
    if (!(size.width() > 0 && size.height() > 0 && size.width() <= kMaxPageSize &&
          size.height() <= kMaxPageSize)) {
        d->error = QStringLiteral("A page of %1 x %2 twips cannot be written.")
                       .arg(size.width())
                       .arg(size.height());
        return -1;
    }
    const int contents = d->out.reserve();
    d->out.writeStream(contents, d->content.write(page));
    const Impl::Page written{d->out.reserve(), d->out.reserve(), false};
    PdfBuffer& out = d->out.beginObject(written.object);
    out << "<</Type/Page/Parent " << d->pageTree << " 0 R/MediaBox[0 0 ";
    out.milli(std::llround(page.size.width() * 50)) << ' ';
    out.milli(std::llround(page.size.height() * 50))
        << "]/Resources " << d->resources << " 0 R/Contents[" << contents << " 0 R "
        << written.overlay << " 0 R]>>";
    d->out.endObject();
    d->pages.push_back(written);
    return int(d->pages.size()) - 1;
}

bool PdfWriter::addOverlay(int page, const PageDisplayList& overlay)
{
    if (!d->opened || d->failed())
        return false;
    if (page < 0 || page >= int(d->pages.size())) {
        d->error = QStringLiteral("There is no page %1 to draw over.").arg(page + 1);
        return false;
    }
    Impl::Page& target = d->pages[size_t(page)];
    if (target.overlaid) {
        d->error = QStringLiteral("Page %1 has its overlay already.").arg(page + 1);
        return false;
    }
    d->out.writeStream(target.overlay, d->content.write(overlay));
    target.overlaid = true;
    return true;
}

bool PdfWriter::finish(QString* error)
{
    auto fail = [&](const QString& reason) {
        d->out.discard();
        if (error)
            *error = reason;
        return false;
    };
    if (!d->opened)
        return fail(QStringLiteral("No PDF file is open for writing."));
    d->opened = false; // whatever happens next, the document is done
    if (d->pages.empty())
        return fail(QStringLiteral("The document has no pages."));
    if (d->failed())
        return fail(d->failure());
    for (const Impl::Page& page : d->pages) {
        if (!page.overlaid)
            d->out.writeStream(page.overlay, {});
    }
    QString fontError;
    if (!d->text.writeFonts(&fontError))
        return fail(fontError);

    PdfBuffer& resources = d->out.beginObject(d->resources);
    resources << "<</Font<<";
    d->text.writeFontResources(resources);
    resources << ">>/ProcSet[/PDF/Text]>>";
    d->out.endObject();

    PdfBuffer& tree = d->out.beginObject(d->pageTree);
    tree << "<</Type/Pages/Count " << qint64(d->pages.size()) << "/Kids[";
    for (size_t i = 0; i < d->pages.size(); ++i)
        tree << (i % 10 == 0 ? "\n" : " ") << d->pages[i].object << " 0 R";
    tree << "]>>";
    d->out.endObject();

    d->out.beginObject(d->catalog) << "<</Type/Catalog/Pages " << d->pageTree << " 0 R>>";
    d->out.endObject();

    PdfBuffer& info = d->out.beginObject(d->info);
    info << "<</Title";
    info.textString(d->title) << "/Producer(Tabulor)>>";
    d->out.endObject();

    // The file identifier: the same document written again gets the same one.
    QCryptographicHash id(QCryptographicHash::Md5);
    id.addData(d->title.toUtf8());
    id.addData(QByteArray::number(qint64(d->pages.size())));
    if (!d->out.finish(d->catalog, d->info, id.result(), &fontError))
        return fail(fontError);
    return true;
}

int PdfWriter::pageCount() const
{
    return int(d->pages.size());
}

QString PdfWriter::errorString() const
{
    return d->failed() ? d->failure() : d->error;
}

} // namespace tabulor
