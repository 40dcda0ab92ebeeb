#include "frminmuebles.h"

#include "carteles.h"
#include "codesearchbinder.h"
#include "columnasinmueble.h"
#include "comboboxbinder.h"
#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "fichafamilia.h"
#include "fieldbinder.h"
#include "fotoprincipal.h"
#include "lookupcatalogue.h"
#include "ownership.h"
#include "sqltext.h"

#include <QAction>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <tuple>

namespace tv::registro {

namespace {

const QString kCodigo = QStringLiteral("CODIGO");
const QString kCalculado = QStringLiteral("HONORARIO_CALCULADO");
const QString kMuniIne = QStringLiteral("CODMUNIINE");
const QString kManual = QStringLiteral("GOOGLE_MAPS_MANUAL");

// A text cut to the width of the column that keeps it.
QVariant recortado(const QString& s, int ancho)
{
    const QString t = s.trimmed().left(ancho);
    return t.isEmpty() ? QVariant() : QVariant(t);
}

} // namespace

TfrmInmuebles::TfrmInmuebles(Tdm& modulo, QWidget* parent, int propietario)
    : RecordScreen(parent),
      mData(modulo),
      mDs(std::make_unique<DataSet>(modulo.datos, modulo.Transacion)),
      mPropietarioInicial(propietario)
{
    setObjectName(QStringLiteral("TfrmInmuebles"));
    setWindowTitle(tituloCartera({}, {}));
    setValidationAsError(true);

    const SentenciasInmuebles s = sentenciasInmuebles(modulo.datos, modulo.Transacion);
    mDs->setSelectSQL(consultaInmuebles());
    mDs->setKeyFields({kCodigo});
    mDs->setUpdateSql({s.refresh, s.modify, s.insert, s.remove});
    mDs->addCalculatedField(kCalculado, {"HONORARIO_VENTA", "HONORARIO_SOBRE", "HONORARIO_PORCENTAJE"});
    mDs->addCalculatedField(kMuniIne, {"MUNICIPIO", "PROVINCIA"});
    mDs->onCalcFields += [this](DataSet& ds) { calcular(ds); };
    mDs->onNewRecord += [this](DataSet& ds) { nuevoRegistro(ds); };
    mDs->beforePost += [this](DataSet& ds) { antesDeGrabar(ds); };
    mDs->beforeDelete += [this](DataSet& ds) { mCodigoBorrado = ds.fieldByName(kCodigo).asString(); };
    mDs->setOnChange(QStringLiteral("CODPROPIETARIO"), [this](DataSetField f) {
        mDs->fieldByName(QStringLiteral("TELEFONO"))
            .setValue(recortado(telefonosPropietario(mData.datos, mData.Transacion, f.value()).primero(), 12));
    });
    mDs->setOnChange(QStringLiteral("CODPROPIETARIO2"), [this](DataSetField f) {
        mDs->fieldByName(QStringLiteral("TELEFONO2"))
            .setValue(recortado(telefonosPropietario(mData.datos, mData.Transacion, f.value()).primero(), 25));
    });
    setDataSet(mDs.get());
    setOwnership(ui::Ownership::inmuebles());
    mDs->open();

    construir();

    connect(mDs.get(), &DataSet::currentChanged, this, &TfrmInmuebles::seguirRegistro);
    connect(mDs.get(), &DataSet::reset, this, &TfrmInmuebles::seguirRegistro);
    connect(mDs.get(), &DataSet::rowChanged, this, &TfrmInmuebles::seguirEstado);
    connect(mDs.get(), &DataSet::stateChanged, this, [this] {
        seguirEstado();
        // Cancelling brings back what the database holds.
        if (!mDs->isEditing() && mRusoCambiado && !mDs->updatesPending())
            leerTextosRusos();
    });
    seguirRegistro();
    resize(1280, 860);
    updateActions();
}

TfrmInmuebles::~TfrmInmuebles()
{
    // Hiding moves the focus out of a box, whose leave handler reaches the
    // data set: let that happen while the data set still exists.
    hide();
}

ui::RecordScreen::Actions TfrmInmuebles::supportedActions() const
{
    return RecordScreen::supportedActions() | Action::Buscar | Action::Imprimir;
}

// ------------------------------------------------------------------ layout

void TfrmInmuebles::construir()
{
    auto* fuera = new QHBoxLayout(body());
    fuera->setContentsMargins(4, 4, 4, 4);
    construirBarraLateral();
    fuera->addWidget(mLateral);
    // The main photograph under the side bar's commands; hidden when there is none.
    mFoto = new FotoPrincipal(mLateral);
    mFoto->setObjectName(QStringLiteral("fotoPrincipal"));
    mFoto->setFixedSize(190, 142);
    mLateralLayout->insertWidget(mLateralLayout->count() - 1, mFoto, 0, Qt::AlignHCenter);

    auto* splitter = new QSplitter(Qt::Vertical, body());
    splitter->setChildrenCollapsible(false);
    fuera->addWidget(splitter, 1);

    mGrid = new ui::DataGrid(mDs.get(), ui::pick(columnasInmueble(), columnasLista()), QStringLiteral("inmuebles"),
                             splitter);
    mGrid->setSheetName(QStringLiteral("Inmuebles"));
    splitter->addWidget(mGrid);

    mPaginas = new QTabWidget(splitter);
    mPaginas->setObjectName(QStringLiteral("paginas"));
    QStringList paginas;
    for (const GrupoInmueble& g : gruposInmueble())
        if (!paginas.contains(g.pagina))
            paginas.append(g.pagina);
    for (const QString& p : paginas) {
        mPaginas->addTab(construirPagina(p), p);
        if (p == QLatin1String(kPaginaObservaciones))
            mPaginas->addTab(construirCarteles(), QString::fromUtf8(kPaginaCarteles));
    }
    splitter->addWidget(mPaginas);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 3);
    splitter->setSizes({220, 600});

    aplicarRestricciones();

    // Derived, never typed.
    for (const QString& c : {kCalculado, QStringLiteral("FECHA_MODIFICA"), QStringLiteral("MUNICIPIO"),
                             QStringLiteral("PROVINCIA")})
        if (auto* e = qobject_cast<QLineEdit*>(controlFor(c)))
            e->setReadOnly(true);
    if (QWidget* w = controlFor(QStringLiteral("FECHA_MODIFICA")))
        w->setEnabled(false);
    if (auto* zona = qobject_cast<ui::ComboBoxBinder*>(binderFor(QStringLiteral("CODTIPOZONA"))))
        zona->setLookup(QStringLiteral("zonas"), true, kMuniIne);
    // Other tables keep the code's number: only digits make one.
    if (auto* codigo = qobject_cast<QLineEdit*>(controlFor(kCodigo)))
        codigo->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9 ]*")), codigo));
    if (auto* video = qobject_cast<QLineEdit*>(controlFor(QStringLiteral("YOUTUBE"))))
        connect(video, &QLineEdit::editingFinished, this, [this, video] {
            if (!mDs->isEditing())
                return;
            const QString n = normalizarVideo(video->text());
            if (n != video->text())
                mDs->fieldByName(QStringLiteral("YOUTUBE")).setValue(n);
        });
}

QWidget* TfrmInmuebles::construirPagina(const QString& pagina)
{
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* hoja = new QWidget(scroll);
    auto* v = new QVBoxLayout(hoja);
    v->setContentsMargins(6, 6, 6, 6);
    // The general page in two columns: the property and its place on the
    // left, its people and price on the right; surfaces beside the rooms.
    QVBoxLayout* izquierda = nullptr;
    QVBoxLayout* derecha = nullptr;
    QHBoxLayout* fila = nullptr;
    if (pagina == QLatin1String(kPaginaGeneral) || pagina == QLatin1String(kPaginaSuperficies)) {
        fila = new QHBoxLayout;
        izquierda = new QVBoxLayout;
        derecha = new QVBoxLayout;
        const bool general = pagina == QLatin1String(kPaginaGeneral);
        fila->addLayout(izquierda, general ? 3 : 1);
        fila->addLayout(derecha, general ? 2 : 1);
        v->addLayout(fila);
    }
    int n = 0;
    for (const GrupoInmueble& g : gruposInmueble()) {
        if (g.pagina != pagina)
            continue;
        auto* caja = new QGroupBox(g.titulo, hoja);
        auto* grid = new QGridLayout(caja);
        grid->setHorizontalSpacing(10);
        ui::Columns campos;
        const bool personas = g.titulo == QLatin1String("Propietarios y agentes");
        if (personas)
            construirPropietarios(grid);
        for (const ui::Column& c : g.columnas)
            if (!personas || !(c.column.startsWith(QLatin1String("CODPROPIETARIO")) ||
                               c.column.startsWith(QLatin1String("TELEFONO"))))
                campos.append(c);
        buildFields(grid, campos, g.porFila);
        if (g.porFila == 1 && !campos.isEmpty() && !campos.first().remarkColumn.isEmpty())
            grid->setColumnStretch(2, 1); // the remarks take the room
        else
            for (int i = 0; i < g.porFila; ++i)
                grid->setColumnStretch(2 * i + 1, 1);
        const bool memo = g.columnas.size() <= 2 && g.columnas.first().kind == ui::ColumnKind::Memo;
        if (!memo)
            grid->setRowStretch(grid->rowCount(), 1);
        if (izquierda && pagina == QLatin1String(kPaginaGeneral))
            (g.titulo == QLatin1String("Propietarios y agentes") ? derecha : izquierda)->addWidget(caja);
        else if (izquierda)
            (n == 0 ? izquierda : derecha)->addWidget(caja);
        else
            v->addWidget(caja, memo ? 1 : 0);
        ++n;
        if (g.titulo == QLatin1String("Precio y honorarios")) {
            // Room for a seven-figure price.
            for (const ui::Column& c : g.columnas)
                if (QWidget* w = controlFor(c.column); w && c.kind != ui::ColumnKind::Flag)
                    w->setMinimumWidth(110);
            auto* etiqueta = new QLabel(QStringLiteral("Honorarios calculados"), caja);
            auto* calculado = new QLineEdit(caja);
            calculado->setObjectName(kCalculado);
            calculado->setReadOnly(true);
            calculado->setFocusPolicy(Qt::NoFocus);
            calculado->setAlignment(Qt::AlignRight);
            calculado->setMinimumWidth(110);
            etiqueta->setBuddy(calculado);
            const int r = grid->rowCount();
            grid->addWidget(etiqueta, r, 0);
            grid->addWidget(calculado, r, 1);
            auto mostrar = [this, calculado] {
                calculado->setText(hayRegistro() ? QLocale(QLocale::Spanish, QLocale::Spain)
                                                       .toString(mDs->fieldByName(kCalculado).asDouble(), 'f', 2)
                                                 : QString());
            };
            connect(mDs.get(), &DataSet::rowChanged, calculado, mostrar);
            connect(mDs.get(), &DataSet::currentChanged, calculado, mostrar);
        }
        if (g.titulo == QStringLiteral("Situación")) {
            auto* boton = new QToolButton(caja);
            boton->setObjectName(QStringLiteral("btnPoblacion"));
            boton->setText(QStringLiteral("…"));
            boton->setToolTip(QStringLiteral("Elegir la población"));
            connect(boton, &QToolButton::clicked, this, &TfrmInmuebles::elegirPoblacion);
            QWidget* municipio = controlFor(QStringLiteral("MUNICIPIO"));
            int r = 0, c = 0, rs = 0, cs = 0;
            grid->getItemPosition(grid->indexOf(municipio), &r, &c, &rs, &cs);
            grid->removeWidget(municipio);
            auto* junto = new QHBoxLayout;
            junto->setSpacing(2);
            junto->addWidget(municipio, 1);
            junto->addWidget(boton);
            grid->addLayout(junto, r, c);
        }
    }
    if (izquierda) {
        izquierda->addStretch(1);
        derecha->addStretch(1);
    }
    v->addStretch(1);
    scroll->setWidget(hoja);
    return scroll;
}

QWidget* TfrmInmuebles::construirCarteles()
{
    auto* idiomas = new QTabWidget;
    idiomas->setObjectName(QStringLiteral("idiomasCartel"));
    auto caja = [this](QWidget* parent, const QString& nombre) {
        auto* e = new QPlainTextEdit(parent);
        e->setObjectName(nombre);
        e->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        // A scroll bar only from six lines on, so short texts read clean.
        connect(e, &QPlainTextEdit::textChanged, e, [e] {
            e->setVerticalScrollBarPolicy(e->document()->lineCount() >= 6 ? Qt::ScrollBarAlwaysOn
                                                                           : Qt::ScrollBarAlwaysOff);
        });
        mCajasCartel.append(e);
        return e;
    };
    auto pagina = [&](const QString& idioma, QPlainTextEdit** cabecera, QPlainTextEdit** informacion,
                      QPlainTextEdit** pie) {
        auto* hoja = new QWidget(idiomas);
        auto* g = new QGridLayout(hoja);
        *cabecera = caja(hoja, QStringLiteral("cabecera") + idioma);
        *informacion = caja(hoja, QStringLiteral("informacion") + idioma);
        *pie = caja(hoja, QStringLiteral("pie") + idioma);
        (*cabecera)->setMaximumHeight(64);
        (*pie)->setMaximumHeight(64);
        g->addWidget(new QLabel(QStringLiteral("Cabecera"), hoja), 0, 0, Qt::AlignTop);
        g->addWidget(*cabecera, 0, 1);
        g->addWidget(new QLabel(QStringLiteral("Texto"), hoja), 1, 0, Qt::AlignTop);
        g->addWidget(*informacion, 1, 1);
        g->addWidget(new QLabel(QStringLiteral("Pie"), hoja), 2, 0, Qt::AlignTop);
        g->addWidget(*pie, 2, 1);
        g->setRowStretch(1, 1);
        idiomas->addTab(hoja, idioma);
    };
    for (const IdiomaCartel& i : idiomasCartel()) {
        QPlainTextEdit *c = nullptr, *t = nullptr, *p = nullptr;
        pagina(i.idioma, &c, &t, &p);
        bindMemo(c, i.cabecera);
        bindMemo(t, i.informacion);
        bindMemo(p, i.pie);
    }
    pagina(QStringLiteral("Ruso"), &mRusoCabecera, &mRusoInformacion, &mRusoPie);
    for (QPlainTextEdit* e : {mRusoCabecera, mRusoInformacion, mRusoPie})
        connect(e, &QPlainTextEdit::textChanged, this, &TfrmInmuebles::rusoTecleado);
    return idiomas;
}

void TfrmInmuebles::construirPropietarios(QGridLayout* grid)
{
    // The owners are found by code or with the search dialog (too many for a
    // list), each with the phone the property keeps of him.
    QWidget* caja = grid->parentWidget();
    int fila = 0;
    for (const auto& [columna, telefono, titulo, destino] :
         {std::tuple{QStringLiteral("CODPROPIETARIO"), QStringLiteral("TELEFONO"), QStringLiteral("Propietario"),
                     &mPropietario},
          std::tuple{QStringLiteral("CODPROPIETARIO2"), QStringLiteral("TELEFONO2"),
                     QStringLiteral("Segundo propietario"), &mPropietario2}}) {
        *destino = new ui::CodeSearchBox(mData.datos, mData.Transacion, ui::CodeTarget::propietarios(), caja);
        (*destino)->setObjectName(columna);
        new ui::CodeSearchBinder(*mDs, columna, *destino);
        auto* etiqueta = new QLabel(titulo, caja);
        etiqueta->setBuddy((*destino)->codeEdit());
        grid->addWidget(etiqueta, fila, 0);
        grid->addWidget(*destino, fila, 1);
        auto* tel = new QLineEdit(caja);
        bindText(tel, telefono);
        tel->setObjectName(telefono);
        tel->setMaxLength(telefono == QLatin1String("TELEFONO") ? 12 : 25);
        auto* etiquetaTel = new QLabel(QStringLiteral("Teléfono"), caja);
        etiquetaTel->setBuddy(tel);
        grid->addWidget(etiquetaTel, fila + 1, 0);
        grid->addWidget(tel, fila + 1, 1);
        fila += 2;
    }
}

void TfrmInmuebles::aplicarRestricciones()
{
    const ui::Restrictions r = ui::Restrictions::current();
    auto ocultar = [this](const QString& columna) {
        QWidget* w = controlFor(columna);
        if (!w)
            w = findChild<QWidget*>(columna);
        if (!w)
            return;
        w->hide();
        for (QLabel* l : w->parentWidget()->findChildren<QLabel*>())
            if (l->buddy() == w)
                l->hide();
    };
    // The agency's fees and limits are economic data; the listed price is public.
    if (r.ocultarDatosEconomicos)
        for (const char* c : {"EUROMINIMO", "EUROMAXIMO", "HONORARIO_VENTA", "HONORARIO_PORCENTAJE",
                              "HONORARIO_SOBRE", "HONORARIO_TOTAL", "HONORARIO_CALCULADO", "GASTOS"})
            ocultar(QLatin1String(c));
    if (r.ocultarDatosInternos) {
        ocultar(QStringLiteral("OBSERVA_INTERNAS_TEXTO"));
        for (int i = 0; i < mPaginas->count(); ++i)
            if (mPaginas->tabText(i) == QLatin1String(kPaginaRegistro))
                mPaginas->setTabVisible(i, false);
    }
}

// ------------------------------------------------------------------ record

void TfrmInmuebles::nuevoRegistro(DataSet& ds)
{
    const QString codigo = rellenarExpediente(
        Query::scalar(mData.datos, mData.Transacion, QStringLiteral("SELECT CODIGO FROM CODINMUEBLE")).toString());
    valoresNuevoInmueble(ds, mData.agente, mPropietarioInicial, codigo);
}

void TfrmInmuebles::antesDeGrabar(DataSet& ds)
{
    auto campo = [&ds](const char* c) { return ds.fieldByName(QLatin1String(c)); };
    // A stored property keeps its code as it is: other tables name it.
    if (ds.state() == DataSet::State::Insert) {
        campo("CODIGO").setValue(rellenarExpediente(campo("CODIGO").asString()));
        mRusoEnAlta = mRusoCambiado;
        if (mRusoCambiado) {
            const TextosRusos t = rusoTecleados();
            campo("CARTELES_INFORMARUS").setValue(t.informacion);
            campo("CARTELES_CABECERARUS").setValue(t.cabecera);
            campo("CARTELES_PIERUS").setValue(t.pie);
        }
    }
    const QString video = campo("YOUTUBE").asString();
    if (!video.isEmpty() && normalizarVideo(video) != video)
        campo("YOUTUBE").setValue(normalizarVideo(video));
    campo("FECHA_MODIFICA").setValue(QDateTime::currentDateTime());
    // The row keeps the descriptions the lists show, so no list needs a join.
    auto describe = [this](const QString& lookup, const QVariant& code) {
        return code.isNull() ? QString() : ui::lookups().description(mData.datos, mData.Transacion, lookup, code);
    };
    campo("DESTIPOINMUEBLE").setValue(recortado(describe(QStringLiteral("tipoinmueble"), campo("CODTIPOINMUEBLE").value()), 20));
    campo("DESTIPOOPERACION").setValue(recortado(describe(QStringLiteral("tipooperacion"), campo("CODTIPOOPERACION").value()), 20));
    campo("DESZONA").setValue(recortado(describe(QStringLiteral("zonas"), campo("CODTIPOZONA").value()), 20));
    campo("NOMBREPROPIETARIO").setValue(recortado(nombrePropietario(mData.datos, mData.Transacion, campo("CODPROPIETARIO").value()), 50));
}

void TfrmInmuebles::calcular(DataSet& ds)
{
    ds.fieldByName(kCalculado).setValue(honorarioCalculado(ds.fieldByName(QStringLiteral("HONORARIO_VENTA")).value(),
                                                            ds.fieldByName(QStringLiteral("HONORARIO_SOBRE")).value(),
                                                            ds.fieldByName(QStringLiteral("HONORARIO_PORCENTAJE")).value()));
    ds.fieldByName(kMuniIne).setValue(codMuniIne(ds.fieldByName(QStringLiteral("MUNICIPIO")).asString(),
                                                 ds.fieldByName(QStringLiteral("PROVINCIA")).asString()));
}

QVariant TfrmInmuebles::codMuniIne(const QString& municipio, const QString& provincia)
{
    const QString m = municipio.trimmed();
    if (m.isEmpty())
        return {};
    const QString clave = m + QLatin1Char('|') + provincia.trimmed();
    auto it = mMuniIne.constFind(clave);
    if (it != mMuniIne.constEnd())
        return *it;
    // The town's INE code names its zones; a name found in several
    // provinces is told apart by the province.
    Query q(mData.datos, mData.Transacion,
            QStringLiteral("SELECT M.CODIGOINE, M.DESPROVINCIA FROM MUNICIPIOS M WHERE M.DESMUNIINE = :M"));
    q.paramByName(QStringLiteral("M")).setAsString(m);
    QVariant codigo;
    for (q.open(); !q.eof(); q.next()) {
        if (!codigo.isValid() || q.field(1).asString().trimmed().compare(provincia.trimmed(), Qt::CaseInsensitive) == 0)
            codigo = q.field(0).value();
    }
    q.close();
    mMuniIne.insert(clave, codigo);
    return codigo;
}

bool TfrmInmuebles::validar()
{
    if (auto* e = qobject_cast<QLineEdit*>(controlFor(kCodigo)); e && mDs->state() == DataSet::State::Insert) {
        const QString padded = rellenarExpediente(e->text());
        if (padded != mDs->fieldByName(kCodigo).asString())
            mDs->fieldByName(kCodigo).setValue(padded.isEmpty() ? QVariant() : QVariant(padded));
    }
    const std::optional<Fallo> f = validarInmueble(*mDs, mData.datos, mData.Transacion);
    if (!f)
        return true;
    QWidget* control = f->columna == QLatin1String("CODPROPIETARIO") ? static_cast<QWidget*>(mPropietario)
                                                                      : controlFor(f->columna);
    return fail(f->mensaje, control);
}

QString TfrmInmuebles::textoConfirmarBorrado() const
{
    return QString::fromUtf8(kPreguntaBorrar);
}

QWidget* TfrmInmuebles::primerCampo() const
{
    return controlFor(QStringLiteral("CODTIPOINMUEBLE"));
}

void TfrmInmuebles::aplicarCambios()
{
    if (!mCodigoBorrado.isEmpty() && mDs->updatesPending()) {
        // The photographs go first and come back if the row cannot go.
        Query sp(mData.Imagenes, mData.Transacion, QStringLiteral("SAVEPOINT BORRAR_INMUEBLE"));
        sp.exec();
        try {
            borrarFotos(mData, mCodigoBorrado);
            mDs->applyUpdates();
        } catch (...) {
            // The screen puts the row back; its photographs stay with it.
            mCodigoBorrado.clear();
            Query(mData.Imagenes, mData.Transacion, QStringLiteral("ROLLBACK TO SAVEPOINT BORRAR_INMUEBLE")).exec();
            throw;
        }
        Query(mData.Imagenes, mData.Transacion, QStringLiteral("RELEASE SAVEPOINT BORRAR_INMUEBLE")).exec();
        mCodigoBorrado.clear();
        return;
    }
    const QString codigo = codigoActual();
    const TextosRusos tecleados = rusoTecleados();
    // A new property carries its Russian texts in its own insert.
    if (!mRusoCambiado || codigo.isEmpty() || mRusoEnAlta) {
        mDs->applyUpdates();
        if (mRusoCambiado)
            mRusoLeido = tecleados;
        mRusoCambiado = false;
        mRusoEnAlta = false;
        return;
    }
    // The Russian texts and the row land together or not at all, and a text
    // another workstation saved meanwhile is never overwritten unseen.
    Query(mData.datos, mData.Transacion, QStringLiteral("SAVEPOINT GRABAR_INMUEBLE")).exec();
    try {
        Query actual(mData.datos, mData.Transacion, QString::fromUtf8(kSqlLeerRusos));
        actual.paramByName(QStringLiteral("codigo")).setAsString(codigo);
        actual.open();
        const TextosRusos guardados = actual.eof() ? TextosRusos{}
                                                   : TextosRusos{actual.field(0).asString(), actual.field(1).asString(),
                                                                 actual.field(2).asString()};
        actual.close();
        if (!(guardados == mRusoLeido))
            throw RecordChangedError();
        Query q(mData.datos, mData.Transacion, QString::fromUtf8(kSqlGuardarRusos));
        q.paramByName(QStringLiteral("informa")).setAsString(tecleados.informacion);
        q.paramByName(QStringLiteral("cabera_ruso")).setAsString(tecleados.cabecera);
        q.paramByName(QStringLiteral("pie_ruso")).setAsString(tecleados.pie);
        q.paramByName(QStringLiteral("codigo")).setAsString(codigo);
        q.exec();
        mDs->applyUpdates();
    } catch (...) {
        Query(mData.datos, mData.Transacion, QStringLiteral("ROLLBACK TO SAVEPOINT GRABAR_INMUEBLE")).exec();
        throw;
    }
    Query(mData.datos, mData.Transacion, QStringLiteral("RELEASE SAVEPOINT GRABAR_INMUEBLE")).exec();
    mRusoLeido = tecleados;
    mRusoCambiado = false;
}

TextosRusos TfrmInmuebles::rusoTecleados() const
{
    return {mRusoInformacion->toPlainText(), mRusoCabecera->toPlainText(), mRusoPie->toPlainText()};
}

// ------------------------------------------------------------------ state

bool TfrmInmuebles::hayRegistro() const
{
    return mDs->isOpen() && mDs->recNo() >= 0;
}

QString TfrmInmuebles::codigoActual() const
{
    return hayRegistro() ? mDs->fieldByName(kCodigo).asString().trimmed() : QString();
}

void TfrmInmuebles::seguirRegistro()
{
    if (!mPaginas)
        return;
    leerTextosRusos();
    if (mFoto) {
        try {
            if (hayRegistro() && mDs->state() != DataSet::State::Insert)
                mFoto->mostrar(mData, codigoActual());
            else
                mFoto->limpiar();
        } catch (const std::exception&) {
            // An unreadable picture or images database costs the picture, not the record.
            mFoto->limpiar();
        }
    }
    seguirEstado();
}

void TfrmInmuebles::seguirEstado()
{
    if (!mPaginas)
        return;
    const bool fila = hayRegistro();
    const bool navegando = mDs->state() == DataSet::State::Browse;
    // Linked screens work on a stored record only.
    if (mLateral) {
        mLateral->setEnabled(navegando);
        for (QAction* a : mAcciones)
            if (a->property("necesitaFila").toBool())
                a->setEnabled(navegando && fila);
    }
    const bool manual = fila && sql::isSet(mDs->fieldByName(kManual).value());
    for (const QString& c : {QStringLiteral("LATITUDE"), QStringLiteral("LONGITUDE")}) {
        if (QWidget* w = controlFor(c)) {
            w->setVisible(manual);
            for (QLabel* l : w->parentWidget()->findChildren<QLabel*>())
                if (l->buddy() == w)
                    l->setVisible(manual);
        }
    }
    for (QPlainTextEdit* e : {mRusoCabecera, mRusoInformacion, mRusoPie})
        if (e)
            e->setReadOnly(!fila);
    QString captador, apartamento;
    if (fila) {
        const QVariant c = mDs->fieldByName(QStringLiteral("CODCAPTADOR")).value();
        if (!c.isNull())
            captador = ui::lookups().description(mData.datos, mData.Transacion, QStringLiteral("agentes"), c);
        apartamento = mDs->fieldByName(QStringLiteral("NOMBRE_APARTAMENTO")).asString();
    }
    setWindowTitle(tituloCartera(captador, apartamento));
    seguirFamilia();
}

int TfrmInmuebles::plantillaDeTipo(const QVariant& tipo)
{
    if (!mPlantillasLeidas) {
        Query q(mData.datos, mData.Transacion,
                QStringLiteral("SELECT I.CODIGO, F.CODPLANTILLA, I.CODFAMILIA FROM TIPOINMUEBLE I "
                               "LEFT JOIN FAMILIA F ON F.CODIGO = I.CODFAMILIA"));
        for (q.open(); !q.eof(); q.next()) {
            int p = q.field(1).asInteger();
            if (p <= 0)
                p = reports::FichaFamilia::plantillaDeFamilia(q.field(2).asInteger());
            mPlantillas.insert(q.field(0).asInteger(), p);
        }
        q.close();
        mPlantillasLeidas = true;
    }
    return tipo.isNull() ? 0 : mPlantillas.value(tipo.toInt(), 0);
}

void TfrmInmuebles::seguirFamilia()
{
    const int plantilla = hayRegistro() ? plantillaDeTipo(mDs->fieldByName(QStringLiteral("CODTIPOINMUEBLE")).value()) : 0;
    if (plantilla == mPlantillaMostrada)
        return;
    mPlantillaMostrada = plantilla;
    // Each family page shows for its own family only.
    const std::pair<const char*, int> familias[] = {{kPaginaSolar, 7}, {kPaginaEdificio, 8}, {kPaginaRustica, 9}};
    for (const auto& [pagina, p] : familias)
        for (int i = 0; i < mPaginas->count(); ++i)
            if (mPaginas->tabText(i) == QString::fromUtf8(pagina))
                mPaginas->setTabVisible(i, plantilla == p);
    // The surfaces read as the family's sheet calls them.
    const reports::FichaFamilia& ficha = reports::FichaFamilia::dePlantilla(plantilla > 0 ? plantilla : 1);
    for (const ui::Column& c : columnasInmueble()) {
        if (c.page != QLatin1String(kPaginaSuperficies))
            continue;
        QString titulo = c.caption;
        for (const auto& d : ficha.datos)
            if (c.column == QLatin1String(d.columna))
                titulo = QString::fromUtf8(d.etiqueta);
        if (QWidget* w = controlFor(c.column))
            for (QLabel* l : w->parentWidget()->findChildren<QLabel*>())
                if (l->buddy() == w)
                    l->setText(titulo);
    }
}

void TfrmInmuebles::leerTextosRusos()
{
    if (!mRusoInformacion)
        return;
    TextosRusos t;
    const QString codigo = codigoActual();
    if (!codigo.isEmpty() && mDs->state() != DataSet::State::Insert) {
        try {
            t = registro::leerTextosRusos(mData, codigo);
        } catch (const DatabaseError& e) {
            ui::dialogs().error(e.message(), this);
        }
    }
    mRusoLeido = t;
    mLeyendoRuso = true;
    mRusoInformacion->setPlainText(t.informacion);
    mRusoCabecera->setPlainText(t.cabecera);
    mRusoPie->setPlainText(t.pie);
    mLeyendoRuso = false;
    mRusoCambiado = false;
}

void TfrmInmuebles::rusoTecleado()
{
    if (mLeyendoRuso || !hayRegistro())
        return;
    if (!mDs->isEditing()) {
        try {
            mDs->edit();
        } catch (const Abort&) {
            // Another agent's property: what was typed goes back.
            leerTextosRusos();
            return;
        }
    }
    mRusoCambiado = true;
    updateActions();
}

void registrarInmuebles()
{
    ui::Command c;
    c.id = QStringLiteral("inmuebles");
    c.factory = [](QWidget* parent) -> QWidget* { return new TfrmInmuebles(*dm, parent); };
    c.openAs = ui::OpenAs::Child;
    ui::commands().add(c);
}

} // namespace tv::registro
