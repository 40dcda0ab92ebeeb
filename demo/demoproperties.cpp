// Zones and properties of the demo agency.
#include "demointernal.h"

namespace tv::demogen {

namespace {

// Flags a new property starts with "N" and the demo does not use.
const char* const kFlagsNo[] = {
    "CSISTEMAANT",   "CSISTEMASEGURIDA", "CSUELO",     "CSUPUEDEVISITAR",  "CTELEFONO",  "CPINTURA",
    "CPLANTABAJA",   "CPLANTAS",         "CPOTENCIA",  "CSUBTERRANEO",     "CCOLUMNAS",  "CDIVISIBLE",
    "CALTILLO",      "CCAJAFUERTE",      "CCARPEXT",   "CCARPINT",         "CAISLANTE",  "CANOCONSTRUCCION",
    "CCLASENEGOCIO", "CINTRANET",        "CVIGILANTE", "CGASTOSCOMUNIDAD", "SSISTEMAANT"};
const char* const kFotosAct[] = {"FOTOS_ACT_PISOS",      "FOTOS_ACT_TUCASA",     "FOTOS_ACT_FOTOCASA",
                                 "FOTOS_ACT_MIWEB",      "FOTOS_ACT_IDEALISTA",  "FOTOS_ACT_YAENCONTRE",
                                 "FOTOS_ACT_HABITACLIA", "FOTOS_ACT_ENALQUILER", "FOTOS_ACT_TROVIMAP"};

// "a, b y c"
QString joinY(const QStringList& items)
{
    if (items.size() <= 1) return items.join(QString());
    return items.mid(0, items.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" y ") + items.last();
}

} // namespace

void Demo::zonas()
{
    baseZona = maxOf("ZONAS", "CODIGO");
    Inserter ins(d.datos, d.Transacion, "ZONAS");
    mZonasDe.assign(w.towns.size(), {});
    for (int t = 0; t < int(w.towns.size()); ++t) {
        for (const QString& name : townAt(t).zones) {
            const Zona z{baseZona + int(mZonas.size()) + 1, t, name};
            mZonasDe[t].push_back(int(mZonas.size()));
            mZonas.push_back(z);
            ins.set("CODIGO", z.codigo);
            ins.set("CODMUNIINE", townAt(t).ine);
            ins.set("DESCRIPCION", name);
            ins.exec();
        }
    }
}

void Demo::planInmuebles()
{
    baseInm = maxOf("INMUEBLES", "CODIGO");
    if (baseInm + s.inmuebles > 99999)
        throw DataFolderError(
            u8("Los códigos de inmueble tienen cinco cifras: no caben %1 inmuebles más.").arg(s.inmuebles));
    static const int opWeights[8][5] = {{68, 27, 0, 2, 3}, {80, 15, 0, 2, 3},  {95, 5, 0, 0, 0},
                                        {50, 45, 5, 0, 0}, {40, 45, 15, 0, 0}, {60, 40, 0, 0, 0},
                                        {90, 10, 0, 0, 0}, {90, 10, 0, 0, 0}};
    const int owners = std::max(0, s.propietarios);
    mInm.reserve(size_t(std::max(0, s.inmuebles)));
    for (int i = 0; i < s.inmuebles; ++i) {
        Inmueble m;
        m.codigo = pad(baseInm + i + 1, 5);
        m.tipo = r.weighted(tipoWeights);
        const Tipo& t = tipoAt(m.tipo);
        m.town = randomTown();
        const std::vector<int>& zs = mZonasDe[m.town];
        m.zona = zs[r.range(0, int(zs.size()) - 1)];
        m.op = r.weighted(opWeights[t.familia - 1]) + 1;
        if (m.op == 5 && !townAt(m.town).coast) m.op = 2;
        m.m2 = metros(t);
        m.precio = priceOf(m.tipo, m.op, m.town, m.m2);
        m.agente = mAgentes[r.range(0, int(mAgentes.size()) - 1)].codigo;
        m.alta = hoy.addDays(-r.range(0, 3 * 365));
        if (owners > 0) m.propietario = i < owners ? i : r.range(0, owners - 1);
        if (r.chance(4)) {
            m.activo = false;
            m.estado = 5;
        }
        mInm.push_back(m);
    }
}

void Demo::inmuebles()
{
    const int iAsc = flagIndex("CASCENSOR"), iTerraza = flagIndex("CTERRAZA"),
              iCerrado = flagIndex("CCERRADO"), iPiscina = flagIndex("CPISCINA"),
              iMuebles = flagIndex("CMUEBLES"), iSuite = flagIndex("CSUITE"),
              iExterior = flagIndex("CEXTERIOR"), iCocina = flagIndex("CCOCINA"),
              iComedor = flagIndex("CCOMEDOR"), iVistas = flagIndex("CVISTAS");
    static const int origWeights[] = {18, 30, 6, 2, 10, 12, 8, 8, 4, 1, 1};
    static const int energyWeights[] = {3, 5, 8, 15, 35, 15, 9};
    static const int energyFrom[] = {20, 45, 75, 115, 175, 355, 425};
    static const int energyTo[] = {44, 74, 114, 174, 354, 424, 600};
    const QString pie = QStringLiteral("Inmobiliaria Tejavista Demo · ") + mTelefonoAgencia;
    const QLocale english(QLocale::English);
    const QLocale russian(QLocale::Russian);

    Inserter ins(d.datos, d.Transacion, "INMUEBLES");
    ins.keyedBy("CODIGO", "CHAR(5)");
    const int nFlags = int(w.flags.size());
    std::vector<bool> f(size_t(nFlags), false);
    for (Inmueble& m : mInm) {
        const Tipo& t = tipoAt(m.tipo);
        const int fam = t.familia;
        const Town& town = townAt(m.town);
        const bool venta = m.op == 1 || m.op == 3;
        for (int k = 0; k < nFlags; ++k)
            f[size_t(k)] = r.chance(w.flags[size_t(k)].percent[size_t(fam - 1)]);
        if (t.codigo == 3) f[iTerraza] = true;
        if (t.codigo == 7) f[iAsc] = false;
        if (t.codigo == 24) f[iCerrado] = true;
        if (town.coast && fam <= 2 && !f[iPiscina]) f[iPiscina] = r.chance(20);
        if (!venta && fam <= 2 && !f[iMuebles]) f[iMuebles] = r.chance(50);

        // Rooms and surfaces, as the search of each family reads them.
        QVariant dobles, sencillas, banos, aseos, suite, plazas, altura, super2, super3, super4, supSolar;
        int habitaciones = 0;
        int numBanos = 0;
        if (fam == 1 || fam == 2) {
            const int total = t.codigo == 5 ? 0 : std::clamp(m.m2 / 28, 1, fam == 2 ? 7 : 5);
            int senc = total >= 3 ? r.range(0, 2) : 0;
            int dob = total - senc;
            int su = 0;
            if (f[iSuite] && dob >= 2) {
                su = 1;
                --dob;
            } else {
                f[iSuite] = false;
            }
            numBanos = 1 + (m.m2 > 85) + (m.m2 > 150) + (m.m2 > 300);
            const int a = m.m2 > 110 && r.chance(40) ? 1 : 0;
            habitaciones = dob + senc + su;
            dobles = dob;
            sencillas = senc;
            suite = su;
            banos = numBanos;
            aseos = a;
            super2 = double(m.m2 * r.range(78, 90) / 100);
            if (fam == 2) supSolar = double(m.m2 * r.range(150, 400) / 100);
        } else if (fam == 3 || fam == 8) {
            super2 = double(m.m2);
            supSolar = double(m.m2);
            if (fam == 3) {
                if (t.codigo != 18) super3 = double(m.m2 * r.range(50, 150) / 100);
                super4 = double(r.range(10, 40));
            }
        } else if (fam == 4) {
            const int h = r.range(6, 12);
            altura = double(h);
            super3 = double(h);
            super2 = double(m.m2 * r.range(85, 100) / 100);
            supSolar = double(m.m2 * r.range(100, 160) / 100);
            banos = 0;
            aseos = r.range(1, 3);
        } else if (fam == 5) {
            numBanos = r.range(1, 2);
            banos = numBanos;
            aseos = 0;
            super2 = double(m.m2 * r.range(85, 95) / 100);
            supSolar = double(m.m2);
        } else if (fam == 6) {
            plazas = t.codigo == 23 ? (m.m2 > 20 ? 2 : 1) : 0;
        } else if (fam == 7) {
            numBanos = std::max(4, m.m2 / 60);
            banos = numBanos;
            aseos = 0;
            super2 = double(m.m2 * r.range(80, 90) / 100);
        }

        // Address.
        QString tipovia, via, numero, planta, puerta;
        if (fam == 3 || fam == 8 || t.codigo == 14 || t.codigo == 15) {
            via = r.pick(w.caminos);
            tipovia = via.startsWith(QLatin1String("Partida")) ? QStringLiteral("PD") : QStringLiteral("CM");
            numero = r.chance(50) ? QStringLiteral("s/n") : QString::number(r.range(1, 250));
        } else {
            tipovia = r.pick(w.siglas);
            via = r.pick(w.calles);
            numero = QString::number(r.range(1, 180));
        }
        if (fam == 1) {
            const int top = town.priceFactor >= 105 || town.coast ? 15 : 8;
            if (t.codigo == 7)
                planta = QStringLiteral("BJ");
            else if (t.codigo == 3)
                planta = QString::number(r.range(5, top + 2));
            else
                planta = QString::number(r.range(1, top));
            if (r.chance(50))
                puerta = QString(QChar(QLatin1Char('A').unicode() + r.range(0, 3)));
            else
                puerta = QString::number(r.range(1, 12));
        } else if (fam == 5) {
            planta = t.codigo == 21 ? QStringLiteral("BJ") : QString::number(r.range(1, 6));
        } else if (fam == 6) {
            planta = QStringLiteral("-1");
        }
        m.direccion =
            (w.nombreVia.value(tipovia) + QLatin1Char(' ') + via).trimmed() + QStringLiteral(", ") + numero;
        if (!planta.isEmpty())
            m.direccion +=
                QStringLiteral(", ") + planta + (puerta.isEmpty() ? QString() : QLatin1Char(' ') + puerta);
        m.direccion += QStringLiteral(" - ") + townName(m.town);

        // Texts.
        const QString& tipoNombre = t.nombre;
        const QString zona = mZonas[m.zona].nombre;
        const QString lugar = zona + QStringLiteral(" (") + shortTown(m.town) + QLatin1Char(')');
        const QString precioTexto =
            Money::fromUnits(m.precio).toSpanish(0, true) + (venta ? QString() : u8(" al mes"));
        QStringList rasgos;
        for (int k = 0; k < nFlags; ++k)
            if (f[size_t(k)] && !w.flags[size_t(k)].texto.isEmpty())
                rasgos << (k == iVistas && town.coast ? u8("vistas al mar") : w.flags[size_t(k)].texto);
        const QString titulo = (capital(tipoNombre) + QLatin1Char(' ') + operacionAt(m.op).enOperacion +
                                QStringLiteral(" en ") + lugar)
                                   .left(80);
        QString descripcion =
            capital(tipoNombre) + QStringLiteral(" de ") + QString::number(m.m2) + u8(" m²");
        if (habitaciones > 0) descripcion += QStringLiteral(", %1 hab.").arg(habitaciones);
        if (numBanos > 0 && fam <= 2)
            descripcion += numBanos == 1 ? u8(", 1 baño") : u8(", %1 baños").arg(numBanos);
        if (!rasgos.isEmpty()) descripcion += QStringLiteral(", ") + rasgos.first();
        descripcion = descripcion.left(80);

        QString texto =
            (m.op == 1   ? u8("Se vende ")
             : m.op == 3 ? u8("Se traspasa ")
                         : u8("Se alquila ")) +
            tipoNombre + (f[iExterior] && fam <= 2 ? u8(" exterior") : QString()) + QStringLiteral(" de ") +
            QString::number(m.m2) + (fam == 3 || fam == 8 ? u8(" m² de superficie") : u8(" m² construidos")) +
            QStringLiteral(" en ") + zona + QStringLiteral(", ") + shortTown(m.town) + QStringLiteral(".");
        if (fam <= 2) {
            if (habitaciones > 0) {
                texto += u8(" Dispone de %1 %2")
                             .arg(habitaciones)
                             .arg(habitaciones == 1 ? u8("dormitorio") : u8("dormitorios"));
                if (suite.toInt() > 0) texto += u8(", uno de ellos en suite");
                texto += u8(", %1 %2").arg(numBanos).arg(numBanos == 1 ? u8("baño") : u8("baños"));
            } else {
                texto += u8(" Espacio diáfano con baño completo");
            }
            if (f[iCocina]) texto += u8(", cocina equipada");
            if (f[iComedor]) texto += u8(" y salón-comedor");
            texto += QLatin1Char('.');
        }
        if (!rasgos.isEmpty()) texto += u8(" Cuenta con ") + joinY(rasgos) + QLatin1Char('.');
        texto += QLatin1Char(' ') + r.pick(w.textosInmueble[size_t(fam - 1)]);
        texto += u8(" Precio: ") + precioTexto + QLatin1Char('.');
        const QString interna = r.chance(40) ? r.pick(w.notasInternas) : QString();

        // Window poster, and the one poster in Russian.
        bool cartel = r.chance(20);
        const bool ruso = mRusoCodigo.isEmpty() && fam <= 2 && m.op == 1 && m.activo && habitaciones > 0;
        cartel = cartel || ruso;
        const bool ingles = cartel && r.chance(50);
        QString cartelTexto, cartelIngles;
        if (cartel) {
            QString medidas = QString::number(m.m2) + u8(" m²");
            QString sizes = medidas;
            if (habitaciones > 0) {
                medidas += u8(" · %1 %2 · %3 %4")
                               .arg(habitaciones)
                               .arg(habitaciones == 1 ? u8("habitación") : u8("habitaciones"))
                               .arg(numBanos)
                               .arg(numBanos == 1 ? u8("baño") : u8("baños"));
                sizes += QStringLiteral(" · %1 %2 · %3 %4")
                             .arg(habitaciones)
                             .arg(habitaciones == 1 ? QStringLiteral("bedroom") : QStringLiteral("bedrooms"))
                             .arg(numBanos)
                             .arg(numBanos == 1 ? QStringLiteral("bathroom") : QStringLiteral("bathrooms"));
            }
            cartelTexto =
                capital(tipoNombre) + QStringLiteral(" en ") + lugar + QStringLiteral("\r\n") + medidas;
            if (!rasgos.isEmpty())
                cartelTexto += QStringLiteral("\r\n") + capital(rasgos.mid(0, 3).join(QStringLiteral(", ")));
            cartelTexto += u8("\r\nPrecio: ") + precioTexto;
            if (ingles)
                cartelIngles = t.ingles + QStringLiteral(" in ") + lugar + QStringLiteral("\r\n") + sizes +
                               QStringLiteral("\r\nPrice: ") + english.toString(m.precio) + u8(" €") +
                               (venta ? QString() : QStringLiteral(" per month"));
            if (ruso) {
                mRusoCodigo = m.codigo;
                mRusoCabecera = u8("ПРОДАЁТСЯ");
                mRusoTexto = t.ruso + u8(" — ") + lugar + u8("\r\nПлощадь: %1 м²").arg(m.m2) +
                             u8("\r\nСпален: %1 · Ванных комнат: %2").arg(habitaciones).arg(numBanos) +
                             u8("\r\nЦена: ") + russian.toString(m.precio) + u8(" €");
            }
        }

        ins.set("CODIGO", m.codigo);
        ins.set("ACTIVADO", sn(m.activo));
        ins.set("PUBLICAR", sn(m.activo));
        ins.set("DESTACADO", sn(m.activo && r.chance(5)));
        ins.literal("CARTELES", "'S'");
        ins.set("SUBIR_INTERNET", sn(m.activo));
        ins.literal("SUBIR_PRECIO", "'S'");
        ins.set("TIENEFOTOS", m.fotos ? QStringLiteral("2") : QStringLiteral("5"));
        ins.literal("GOOGLE_MAPS_MANUAL", "'N'");
        ins.literal("TURISTICO_ESTADO", "'--'");
        ins.set("CODTIPOINMUEBLE", t.codigo);
        ins.set("DESTIPOINMUEBLE", t.mayus);
        ins.set("CODTIPOOPERACION", m.op);
        ins.set("DESTIPOOPERACION", operacionAt(m.op).nombre);
        ins.set("CODTIPOZONA", mZonas[m.zona].codigo);
        ins.set("DESZONA", zona);
        ins.set("CODESTADO", m.estado);
        ins.set("CODORIGEN", r.weighted(origWeights) + 1);
        ins.set("CODAGENTE", m.agente);
        ins.set("CODCAPTADOR", m.agente);
        ins.set("CODPROPIETARIO", m.propietario >= 0 ? QVariant(mProp[m.propietario].codigo) : QVariant());
        ins.set("NOMBREPROPIETARIO",
                m.propietario >= 0 ? QVariant(mProp[m.propietario].apeynom) : QVariant());
        ins.set("FECHAALTA", m.alta);
        {
            const QDate day = r.between(m.alta, hoy);
            const int h = r.range(9, 19);
            const int mi = r.range(0, 59);
            ins.set("FECHA_MODIFICA", QDateTime(day, QTime(h, mi)));
        }
        ins.set("TIPOVIA", tipovia);
        ins.set("NOMBREVIA", via);
        ins.set("NUMERO", numero);
        ins.set("PLANTA", orNull(planta));
        ins.set("PUERTA", orNull(puerta));
        ins.set("CP", cp(m.town));
        ins.set("MUNICIPIO", townName(m.town));
        ins.set("PROVINCIA", province(m.town));
        {
            const int dLat = r.range(-120, 120);
            const int dLon = r.range(-120, 120);
            ins.set("LATITUDE", town.lat + dLat / 10000.0);
            ins.set("LONGITUDE", town.lon + dLon / 10000.0);
        }
        ins.set("EUROIMPORTE", double(m.precio));
        if (venta) {
            const int pct = r.range(90, 97);
            ins.set("EUROMINIMO", double(m.precio * pct / 100 / 500 * 500));
            const int half = r.range(6, 10);
            ins.set("HONORARIO_PORCENTAJE", half / 2.0);
        } else {
            ins.set("EUROMINIMO", QVariant());
            ins.set("HONORARIO_PORCENTAJE", QVariant());
        }
        ins.set("CSUPER1", double(m.m2));
        ins.set("CSUPER2", super2);
        ins.set("CSUPER3", super3);
        ins.set("CSUPER4", super4);
        ins.set("CSUPSOLAR", supSolar);
        ins.set("CHABDOBLES", dobles);
        ins.set("CHABSENCILLAS", sencillas);
        ins.set("CNUMSUITE", suite);
        ins.set("CNUMBANOS", banos);
        ins.set("CNUMASEOS", aseos);
        ins.set("CPLAZAS", plazas);
        ins.set("CALTURA", altura);
        for (int k = 0; k < nFlags; ++k)
            ins.set(w.flags[size_t(k)].column.constData(), sn(f[size_t(k)]));
        for (const char* c : kFlagsNo)
            ins.literal(c, "'N'");
        for (const char* c : kFotosAct)
            ins.literal(c, "'N'");
        ins.set("SGASTOSCOMUNIDAD", fam == 1 ? QVariant(double(r.range(25, 120))) : QVariant());
        if (fam == 1 || fam == 2 || fam == 4 || fam == 5 || fam == 7) {
            const int e = r.weighted(energyWeights);
            const int consumo = r.range(energyFrom[e] * 10, energyTo[e] * 10);
            const int emisiones = r.range(consumo / 6, consumo / 4);
            ins.set("ENERGETICA", QString(QChar(QLatin1Char('A').unicode() + e)));
            ins.set(
                "CONSUMO",
                QLocale::c().toString(consumo / 10.0, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')));
            ins.set(
                "EMISIONES",
                QLocale::c().toString(emisiones / 10.0, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')));
        } else {
            ins.set("ENERGETICA", QVariant());
            ins.set("CONSUMO", QVariant());
            ins.set("EMISIONES", QVariant());
        }
        if (venta && r.chance(60)) {
            static const char az[] = "ABCDEFGHJKLMNPQRSTUVWXYZ";
            QString ref = pad(r.range(0, 9999999), 7);
            for (int k = 0; k < 2; ++k)
                ref += QLatin1Char(az[r.range(0, 23)]);
            ref += pad(r.range(0, 9999), 4);
            ref += QLatin1Char(az[r.range(0, 23)]);
            ref += pad(r.range(1, 9999), 4);
            for (int k = 0; k < 2; ++k)
                ref += QLatin1Char(az[r.range(0, 23)]);
            ins.set("REFCATASTRAL", ref);
        } else {
            ins.set("REFCATASTRAL", QVariant());
        }
        ins.set("TITULO", titulo);
        ins.set("DESCRIPCION", descripcion);
        ins.set("OBSERVACIONES", texto);
        ins.set("OBSERVACIONES_TEXTO", texto);
        ins.set("OBSERVA_INTERNAS", orNull(interna));
        ins.set("OBSERVA_INTERNAS_TEXTO", orNull(interna));
        ins.set("CARTELES_CABECERA", cartel ? QVariant(operacionAt(m.op).cabecera) : QVariant());
        ins.set("CARTELES_INFORMACION", orNull(cartelTexto));
        ins.set("CARTELES_PIE", cartel ? QVariant(pie) : QVariant());
        ins.set("CARTELES_CABECERAENG", ingles ? QVariant(operacionAt(m.op).cabeceraIngles) : QVariant());
        ins.set("CARTELES_INFORMAINGLES", orNull(cartelIngles));
        ins.set("CARTELES_PIEENG", ingles ? QVariant(pie) : QVariant());
        {
            const bool fc = m.activo && r.chance(60);
            const bool id = m.activo && r.chance(70);
            const bool hb = m.activo && r.chance(30);
            const bool ps = m.activo && r.chance(40);
            ins.set("PORTAL_FOTOCASA", sn(fc));
            ins.set("PORTAL_IDEALISTA", sn(id));
            ins.set("PORTAL_HABITACLIA", sn(hb));
            ins.set("PORTAL_PISOS", sn(ps));
        }
        ins.exec();
    }
}

} // namespace tv::demogen
