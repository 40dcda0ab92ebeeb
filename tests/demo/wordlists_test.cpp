#include "wordlists.h"

#include <QDirIterator>
#include <QFile>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace tv::demo;

namespace {

// No entry may be empty, padded, or carry a replacement character (bytes that were not UTF-8).
void expectClean(const QStringList& list, const char* what)
{
    EXPECT_FALSE(list.isEmpty()) << what;
    for (const QString& e : list) {
        EXPECT_FALSE(e.isEmpty()) << what;
        EXPECT_EQ(e, e.trimmed()) << what << ": '" << e.toStdString() << "'";
        EXPECT_FALSE(e.contains(QChar::ReplacementCharacter)) << what << ": " << e.toStdString();
    }
}

bool hasZone(const WordLists& w, const char* town, const char* zone)
{
    for (const Town& t : w.towns)
        if (t.name == QString::fromUtf8(town)) return t.zones.contains(QString::fromUtf8(zone));
    return false;
}

TEST(WordLists, LoadWithEveryEntryFilledAndAccentsIntact)
{
    const WordLists& w = wordLists();
    EXPECT_EQ(&w, &wordLists()); // read once, then shared

    ASSERT_EQ(w.towns.size(), 19u);
    QStringList towns, zones, provinces;
    for (const Town& t : w.towns) {
        towns << t.name;
        provinces << t.province;
        zones << t.zones;
        EXPECT_GT(t.weight, 0) << t.name.toStdString();
        EXPECT_GT(t.cpCount, 0) << t.name.toStdString();
    }
    expectClean(towns, "towns");
    expectClean(zones, "zones");
    EXPECT_EQ(w.towns.front().name, QString::fromUtf8("València"));
    EXPECT_EQ(w.towns.front().province, QString::fromUtf8("Valencia/València"));
    EXPECT_DOUBLE_EQ(w.towns.front().lat, 39.4699);
    EXPECT_DOUBLE_EQ(w.towns.front().lon, -0.3763);
    EXPECT_TRUE(towns.contains(QString::fromUtf8("Jávea/Xàbia")));
    EXPECT_TRUE(hasZone(w, "Alicante/Alacant", "Benalúa"));
    EXPECT_EQ(provinces.removeDuplicates(), 17);

    ASSERT_EQ(w.tipos.size(), 27u);
    QStringList tipos;
    for (const Tipo& t : w.tipos) {
        tipos << t.nombre << t.mayus << t.ingles << t.ruso;
        EXPECT_GE(t.familia, 1);
        EXPECT_LE(t.familia, 8);
        EXPECT_LE(t.m2Min, t.m2Max) << t.nombre.toStdString();
    }
    expectClean(tipos, "property types");
    EXPECT_EQ(w.tipos[2].nombre, QString::fromUtf8("ático"));
    EXPECT_EQ(w.tipos[0].ruso, QString::fromUtf8("Квартира"));

    ASSERT_EQ(w.operaciones.size(), 5u);
    EXPECT_EQ(w.operaciones[3].cabecera, QString::fromUtf8("ALQUILER CON OPCIÓN A COMPRA"));

    QStringList flagTexts;
    for (const Flag& f : w.flags)
        if (!f.texto.isEmpty()) flagTexts << f.texto;
    ASSERT_EQ(w.flags.size(), 44u);
    expectClean(flagTexts, "feature texts");
    EXPECT_TRUE(flagTexts.contains(QString::fromUtf8("calefacción")));

    QStringList extranjeros;
    for (const Extranjero& e : w.extranjeros)
        extranjeros << e.nombre << e.pais;
    expectClean(extranjeros, "foreigners");
    EXPECT_EQ(w.extranjeros.front().nombre, QString::fromUtf8("Hans Müller"));
    EXPECT_FALSE(w.extranjeros.front().mujer);

    expectClean(w.hombres, "men's names");
    expectClean(w.mujeres, "women's names");
    expectClean(w.apellidos, "surnames");
    EXPECT_TRUE(w.apellidos.contains(QString::fromUtf8("Muñoz")));
    EXPECT_TRUE(w.mujeres.contains(QString::fromUtf8("Begoña")));
    expectClean(w.calles, "streets");
    expectClean(w.caminos, "country roads");
    expectClean(w.siglas, "street kinds");
    EXPECT_EQ(w.siglas.count(QStringLiteral("CL")), 6); // its weight
    EXPECT_EQ(w.nombreVia.value(QStringLiteral("AV")), QStringLiteral("Avenida"));
    expectClean(w.estadosCiviles, "marital states");
    expectClean(w.situacionesLaborales, "work situations");
    expectClean(w.estudios, "studies");
    expectClean(w.notasCliente, "client notes");
    expectClean(w.notasPropietario, "owner notes");
    for (const QStringList& texts : w.textosInmueble)
        expectClean(texts, "property texts");
    expectClean(w.notasInternas, "internal notes");
    expectClean(w.motivosDescarte, "discard reasons");
    expectClean(w.resultadosGestion, "follow-up results");
    expectClean(w.recordatorios, "reminders");
    expectClean(w.departamentos, "departments");
    EXPECT_EQ(w.departamentos.last(), QString::fromUtf8("Administración"));
    expectClean(w.dominiosCorreo, "mail domains");
    expectClean(w.bancos, "banks");
    expectClean(w.meses, "months");
    ASSERT_EQ(w.gastos.size(), 13u);
    for (const ClaseGasto& g : w.gastos)
        expectClean(g.conceptos, "expense descriptions");
    EXPECT_EQ(w.gastos.front().tipo, QStringLiteral("IBI"));
}

// Every compiled-in file is valid UTF-8 with Unix line ends and no blank line.
TEST(WordLists, EveryFileIsCleanUtf8)
{
    int files = 0;
    for (QDirIterator it(QStringLiteral(":/demo"), QDir::Files); it.hasNext();) {
        const QString path = it.next();
        ++files;
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << path.toStdString();
        const QByteArray bytes = f.readAll();
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = utf8(bytes);
        EXPECT_FALSE(utf8.hasError()) << path.toStdString();
        EXPECT_FALSE(bytes.contains('\r')) << path.toStdString();
        EXPECT_TRUE(bytes.endsWith('\n')) << path.toStdString();
        const QStringList lines = text.chopped(1).split(QLatin1Char('\n'));
        for (int i = 0; i < lines.size(); ++i)
            EXPECT_FALSE(lines[i].trimmed().isEmpty()) << path.toStdString() << ':' << i + 1;
    }
    EXPECT_GE(files, 20);
}

class WordFiles : public ::testing::Test {
protected:
    QString write(const char* name, const char* utf8)
    {
        const QString path = dir.filePath(QString::fromLatin1(name));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(utf8);
        return path;
    }
    QTemporaryDir dir;
};

TEST_F(WordFiles, ListsKeepOrderAndRefuseEmptyLines)
{
    EXPECT_EQ(readList(write("a.txt", "Dénia\nXàbia\n")),
              (QStringList{QString::fromUtf8("Dénia"), QString::fromUtf8("Xàbia")}));
    // Line ends written on Windows read the same.
    EXPECT_EQ(readList(write("b.txt", "Dénia\r\nXàbia")),
              (QStringList{QString::fromUtf8("Dénia"), QString::fromUtf8("Xàbia")}));
    EXPECT_THROW(readList(write("c.txt", "Dénia\n\nXàbia\n")), std::runtime_error);
    EXPECT_THROW(readList(write("d.txt", "Dénia\n \n")), std::runtime_error);
    EXPECT_THROW(readList(write("e.txt", "")), std::runtime_error);
    EXPECT_THROW(readList(write("f.txt", "D\xe9nia\n")), std::runtime_error); // Latin-1, not UTF-8
    EXPECT_THROW(readList(dir.filePath(QStringLiteral("missing.txt"))), std::runtime_error);
}

TEST_F(WordFiles, TablesCheckTheirHeaderAndFieldCount)
{
    const QStringList columns{QStringLiteral("ine"), QStringLiteral("zona")};
    const auto rows = readTable(write("a.tsv", "ine\tzona\n3014\tBenalúa\n3014\t\n"), columns);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], (QStringList{QStringLiteral("3014"), QString::fromUtf8("Benalúa")}));
    EXPECT_EQ(rows[1], (QStringList{QStringLiteral("3014"), QString()})); // an empty last field is a field
    EXPECT_THROW(readTable(write("b.tsv", "zona\tine\n3014\tBenalúa\n"), columns), std::runtime_error);
    EXPECT_THROW(readTable(write("c.tsv", "ine\tzona\n3014\n"), columns), std::runtime_error);
    EXPECT_THROW(readTable(write("d.tsv", "ine\tzona\n3014\tBenalúa\tsobra\n"), columns), std::runtime_error);
    EXPECT_THROW(readTable(write("e.tsv", "ine\tzona\n"), columns), std::runtime_error);
}

} // namespace
