// Pictures of the property register for the documentation, taken only when asked:
//   TEJAVISTA_CAPTURAS=docs xvfb-run -a build/tests/test_register --gtest_filter='Capturas*'
#include "demodata.h"
#include "frmfotos.h"
#include "frminmuebles.h"
#include "query.h"
#include "gridsettings.h"
#include "testdata.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QTabWidget>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tv;

namespace {

QString carpeta()
{
    return qEnvironmentVariable("TEJAVISTA_CAPTURAS");
}

void guardar(QWidget& w, const QString& nombre)
{
    w.show();
    QCoreApplication::processEvents();
    const QString path = QDir(carpeta()).filePath(nombre);
    ASSERT_TRUE(w.grab().save(path)) << path.toStdString();
}

} // namespace

TEST(Capturas, CarteraDeInmuebles)
{
    if (carpeta().isEmpty())
        GTEST_SKIP() << "TEJAVISTA_CAPTURAS names the folder for the pictures";
    QTemporaryDir ajustes;
    ui::GridSettings::setStorageFile(ajustes.filePath(QStringLiteral("rejillas.ini")));
    test::TestData data;
    DemoSize size;
    size.inmuebles = 60;
    size.inmueblesConFotos = 20;
    fillDemoAgency(data.dm(), 20261122, size);
    // An active property with photographs, as agents see most of them.
    registro::TfrmInmuebles pantalla(data.dm());
    pantalla.resize(1280, 900);
    QString codigo;
    Query conFotos(data.dm().Imagenes, data.dm().Transacion,
                   QStringLiteral("SELECT CODINMUEBLE FROM IMAGENES GROUP BY CODINMUEBLE ORDER BY COUNT(*) DESC, 1"));
    for (conFotos.open(); !conFotos.eof() && codigo.isEmpty(); conFotos.next()) {
        const QString c = QString::number(conFotos.field(0).asInteger()).rightJustified(5, QLatin1Char('0'));
        if (pantalla.dataSet()->locate(QStringLiteral("CODIGO"), c))
            codigo = c;
    }
    conFotos.close();
    ASSERT_FALSE(codigo.isEmpty());
    const char* nombres[] = {"general", "superficies", "caracteristicas", "solar", "edificio", "rustica",
                             "registro", "observaciones", "carteles", "publicacion"};
    QTabWidget* paginas = pantalla.paginas();
    for (int i = 0; i < paginas->count() && i < int(std::size(nombres)); ++i) {
        if (!paginas->isTabVisible(i))
            continue;
        paginas->setCurrentIndex(i);
        guardar(pantalla, QStringLiteral("inmuebles-%1.png").arg(QLatin1String(nombres[i])));
    }

    registro::TfrmFotos fotos(data.dm(), codigo);
    fotos.resize(900, 560);
    if (!fotos.ids().isEmpty())
        fotos.seleccionar(fotos.ids().first());
    guardar(fotos, QStringLiteral("inmuebles-fotos.png"));
    ui::GridSettings::setStorageFile({});
}
