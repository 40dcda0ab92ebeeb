#include "plaintext.h"

#include <gtest/gtest.h>

using namespace tv::ui;

TEST(PlainText, RtfKeepsOnlyTheVisibleText)
{
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Tahoma;}}"
        "{\\colortbl ;\\red255\\green0\\blue0;}{\\*\\generator Msftedit 5.41;}"
        "\\viewkind4\\uc1\\pard\\lang3082\\f0\\fs16 Piso en Pe\\'f1\\'edscola, \\b reformado\\b0 .\\par\n"
        "Precio: 120.000 \\'80\\tab negociable\\par\n"
        "Calefacci\\u243?n y ascensor \\{nuevo\\}\\par\n"
        "{\\*\\bkmkstart x}{\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt ver web}}\\par\n"
        "}");
    EXPECT_EQ(detectTextFormat(rtf), TextFormat::Rtf);
    EXPECT_EQ(rtfToPlainText(rtf), QStringLiteral("Piso en Peñíscola, reformado.\n"
                                                  "Precio: 120.000 €\tnegociable\n"
                                                  "Calefacción y ascensor {nuevo}\n"
                                                  "ver web"));
}

TEST(PlainText, HtmlAndPlainText)
{
    const QString html = QStringLiteral("<html><body><p>Ático con <b>terraza</b></p><p>Vistas&nbsp;al mar</p></body></html>");
    EXPECT_EQ(detectTextFormat(html), TextFormat::Html);
    EXPECT_EQ(plainTextOf(html), QStringLiteral("Ático con terraza\nVistas al mar"));
    EXPECT_EQ(detectTextFormat(QStringLiteral("Casa 3 < 4 dormitorios")), TextFormat::Plain);
    EXPECT_EQ(plainTextOf(QStringLiteral("Casa con jardín\n\n")), QStringLiteral("Casa con jardín"));
    EXPECT_EQ(plainTextOf(QString()), QString());
}

TEST(PlainText, RtfAsWordProcessorsSaveIt)
{
    // Nested font table, a \* destination, Windows-1252 escapes, Unicode
    // escapes with their fallback, escaped braces and CR/LF in the source.
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fnil Tahoma;}{\\f1\\fswiss Arial;}}{\\*\\generator Riched20;}"
        "\\viewkind4\\uc1\\pard\\f0\\fs20 Precio 100 \\'80, \\'93ojo\\'94 Espa\\'f1a\\par\r\n"
        "Segunda l\\'ednea \\{x\\}\\par\r\n\\u8364? fin\\par\r\n}");
    EXPECT_EQ(tv::ui::plainTextOf(rtf),
              QStringLiteral("Precio 100 €, “ojo” España\nSegunda línea {x}\n€ fin"));
}
