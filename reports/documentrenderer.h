#pragma once

#include <QImage>
#include <QList>
#include <QPair>
#include <QRectF>
#include <QString>
#include <QStringList>

class QFontMetricsF;
class QPrinter;
class QTextDocument;

namespace tv::reports {

// Where a page footer's two texts go: the page number ("Página N de M") at
// the right and the footer text in the width left beside it, wrapped onto as
// many lines as `area` holds, the last one elided, so a long agency line
// never runs into the page number. The lines are centred in `area` as a
// block; the page number shares the baseline of the last one.
struct FooterLayout {
    QRectF pageNumber;
    QStringList lines;
    QList<QRectF> lineRects; // one per line, each wide enough for its text
};
FooterLayout layoutFooter(const QString& footer, const QString& pageNumber,
                          const QFontMetricsF& footerMetrics, const QFontMetricsF& pageNumberMetrics,
                          const QRectF& area, double gap);

// Lays out a rendered report (HTML) with QTextDocument on A4 pages and paints
// it page by page on a printer (a PDF file, a real printer or a preview),
// adding the running header from the second page on and a footer with the
// page number on every page.
//
// The HTML may carry, in its <head>:
//   <title>...</title>                         the document's title
//   <meta name="cabecera" content="...">      left text of the running header
//                                             (the agency's name otherwise)
//   <meta name="pie" content="...">           left text of the footer ("[pagina]"
//                                             and "[paginas]" are replaced)
//   <meta name="orientacion" content="horizontal">  landscape pages
// Images given as data: URIs are decoded once and handed to the layout as
// resources; other relative image paths are read from `baseFolder`.
class DocumentRenderer {
public:
    DocumentRenderer(const QString& html, const QString& baseFolder = {});

    // Header and footer texts used when the HTML names none.
    void setDefaults(const QString& header, const QString& footer);

    QString title() const { return mTitle; }
    QString headerText() const { return mHeader; }
    QString footerText() const { return mFooter; }
    bool landscape() const { return mLandscape; }
    int imageCount() const { return int(mImages.size()); }

    // Sets A4 and the orientation the HTML asks for; call before painting
    // starts and before a printer dialog, so the user can still change them.
    void preparePrinter(QPrinter& printer) const;
    // Paints every page on the printer's paper as it is set; returns the
    // number of pages, or -1 when the printer could not be started (an
    // output file that cannot be written).
    int print(QPrinter& printer) const;

private:
    void setUpDocument(QTextDocument& doc, QPrinter& printer) const;

    QString mHtml;
    QString mBaseFolder;
    QString mTitle;
    QString mHeader;
    QString mFooter;
    bool mLandscape = false;
    QList<QPair<QString, QImage>> mImages;
};

} // namespace tv::reports
