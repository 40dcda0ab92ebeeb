#include "pdftools.h"
#include "templateengine.h"

#include <QDate>
#include <QDateTime>

#include <gtest/gtest.h>

using tv::reports::renderTemplateText;

namespace {

QString render(const QString& text, const QVariantMap& data)
{
    QString out;
    QString error;
    EXPECT_TRUE(renderTemplateText(text, data, &out, &error)) << error.toStdString();
    return out;
}

} // namespace

TEST(TemplateEngine, FillsValuesListsAndDottedNames)
{
    const QVariantMap data{
        {"empresa", QVariantMap{{"nombre", "Inmobiliaria Sol"}}},
        {"filas", QVariantList{QVariantMap{{"c", "00001"}}, QVariantMap{{"c", "00002"}}}},
        {"n", 42},
    };
    EXPECT_EQ(render("{{empresa.nombre}}|{{#filas}}[{{c}}]{{/filas}}|{{n}}", data),
              "Inmobiliaria Sol|[00001][00002]|42");
}

TEST(TemplateEngine, EscapesHtmlAndKeepsLineBreaks)
{
    EXPECT_EQ(render("{{t}}", {{"t", "a < b & \"c\" 'd'\nlínea 2\r\nlínea 3"}}),
              "a &lt; b &amp; &quot;c&quot; &#39;d&#39;<br/>línea 2<br/>línea 3");
    // Triple braces leave markup alone.
    EXPECT_EQ(render("{{{t}}}", {{"t", "<b>x</b>"}}), "<b>x</b>");
}

TEST(TemplateEngine, EmptyTextsNullsAndEmptyListsAreFalse)
{
    const QString t = "{{#v}}con{{/v}}{{^v}}sin{{/v}}";
    EXPECT_EQ(render(t, {{"v", ""}}), "sin");
    EXPECT_EQ(render(t, {{"v", "   "}}), "sin");
    EXPECT_EQ(render(t, {{"v", QVariant()}}), "sin");
    EXPECT_EQ(render(t, {}), "sin");
    EXPECT_EQ(render(t, {{"v", QVariantList()}}), "sin");
    EXPECT_EQ(render(t, {{"v", false}}), "sin");
    EXPECT_EQ(render(t, {{"v", "x"}}), "con");
    EXPECT_EQ(render(t, {{"v", 0}}), "con");
    EXPECT_EQ(render(t, {{"v", true}}), "con");
}

TEST(TemplateEngine, DatesAndNumbersPrintTheSpanishWay)
{
    EXPECT_EQ(render("{{d}}", {{"d", QDate(2026, 3, 7)}}), "07/03/2026");
    EXPECT_EQ(render("{{d}}", {{"d", QDateTime(QDate(2026, 3, 7), QTime(0, 0))}}), "07/03/2026");
    EXPECT_EQ(render("{{d}}", {{"d", QDateTime(QDate(2026, 3, 7), QTime(9, 5))}}), "07/03/2026 09:05");
    EXPECT_EQ(render("{{x}}", {{"x", 1234.5}}), "1.234,5");
}

TEST(TemplateEngine, ReportsTheParserMessage)
{
    QString out;
    QString error;
    EXPECT_FALSE(renderTemplateText("{{#abierta}} sin cerrar", {}, &out, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(error.contains("abierta")) << error.toStdString();
}

TEST(TemplateEngine, IncludesPartialsAndThoseTheyName)
{
    QStringList asked;
    auto loader = [&asked](const QString& name) {
        asked.append(name);
        if (name == "_cabecera")
            return QString("<h1>{{titulo}}</h1>{{> _pie}}");
        return QString("<p>pie</p>");
    };
    QString out;
    QString error;
    ASSERT_TRUE(renderTemplateText("{{> _cabecera}}cuerpo{{> _cabecera}}", {{"titulo", "Hola"}}, &out, &error, loader));
    EXPECT_EQ(out, "<h1>Hola</h1><p>pie</p>cuerpo<h1>Hola</h1><p>pie</p>");
    EXPECT_EQ(asked, QStringList({"_cabecera", "_pie"}));
}
