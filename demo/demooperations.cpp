// Demands, discards, follow-ups with their agenda, operations and expenses of the demo agency.
#include "demointernal.h"

namespace tv::demogen {

namespace {

// Every demand flag; the ones matching reads for a family may be "S".
const char* const kDemandFlags[] = {
    "CAGUA",       "CAIRE",       "CAISLANTES",     "CALTILLO",      "CALUMBRADO",  "CARBOLES",
    "CASCENSOR",   "CASFALTADO",  "CBALCON",        "CCALEFACCION",  "CCERRADO",    "CCOLUMNAS",
    "CCULTIVABLE", "CEDIFICABLE", "CEDIFICACIONES", "CELECTRICIDAD", "CESCAPARATE", "CEXTERIOR",
    "CGARAJE",     "CGRUA",       "CJARDIN",        "CLUZ",          "CMUEBLES",    "CMUELLE",
    "COFICINA",    "CPINTURA",    "CPISCINA",       "CPLANTABAJA",   "CPLANTAS",    "CPOZO",
    "CREJAS",      "CSALHUMOS",   "CSEGURIDAD",     "CSUBTERRANEO",  "CSUITE",      "CTERRAZA",
    "CTRASTERO",   "CURBANIZADO", "CVESTURIOS",     "CVIGILANTE",    "CVPO"};

struct DemandFlag {
    const char* column;
    int family; // 0: families 1 and 2
    int percent;
};
const DemandFlag kDemandWishes[] = {
    {"CASCENSOR", 1, 30},   {"CGARAJE", 0, 20},   {"CTERRAZA", 0, 18},   {"CEXTERIOR", 1, 25},
    {"CPISCINA", 2, 35},    {"CPISCINA", 1, 6},   {"CTRASTERO", 0, 8},   {"CCALEFACCION", 0, 6},
    {"CVPO", 1, 2},         {"CCERRADO", 6, 20},  {"CSEGURIDAD", 6, 10}, {"CESCAPARATE", 5, 40},
    {"CAIRE", 5, 20},       {"CSALHUMOS", 5, 15}, {"CMUELLE", 4, 30},    {"COFICINA", 4, 30},
    {"CURBANIZADO", 3, 50}, {"CAGUA", 3, 30},     {"CASFALTADO", 3, 10},
};

} // namespace

void Demo::planOperaciones()
{
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    if (n == 0 || c == 0) return;
    std::vector<bool> usado(size_t(n), false);
    const int wanted = std::min(s.operaciones, n / 2);
    for (int k = 0; k < wanted; ++k) {
        int idx = -1;
        for (int tries = 0; tries < 50 && idx < 0; ++tries) {
            const int x = r.range(0, n - 1);
            if (mInm[x].activo && !usado[x]) idx = x;
        }
        if (idx < 0) continue;
        usado[idx] = true;
        Inmueble& m = mInm[idx];
        Operacion o;
        o.inmueble = idx;
        o.cliente = r.range(0, c - 1);
        const int x = r.range(0, 99);
        o.estado = x < 12 ? 0 : x < 30 ? 1 : x < 45 ? 2 : x < 88 ? 3 : 4;
        const bool venta = m.op == 1 || m.op == 3;
        const int dRes = r.range(1, 15);
        const int dAce = r.range(7, 45);
        const int dFin = venta ? r.range(20, 75) : r.range(3, 20);
        const int dCan = r.range(2, 25);
        const int total = (o.estado >= 1 ? dRes : 0) + (o.estado >= 2 ? dAce : 0) +
                          (o.estado >= 3 ? dFin : 0) + (o.estado >= 4 ? dCan : 0);
        const QDate earliest = std::max(m.alta, mCli[o.cliente].alta);
        o.alta = r.between(earliest, hoy.addDays(-total));
        // Clamping to today keeps the dates in order when a late client leaves no room.
        auto upTo = [this](QDate day) { return day > hoy ? hoy : day; };
        if (o.estado >= 1) o.reserva = upTo(o.alta.addDays(dRes));
        if (o.estado >= 2) o.acepta = upTo(o.reserva.addDays(dAce));
        if (o.estado >= 3) o.finaliza = upTo(o.acepta.addDays(dFin));
        if (o.estado >= 4) o.cancela = upTo(o.finaliza.addDays(dCan));
        switch (o.estado) {
        case 1:
            m.activo = false;
            m.estado = 2;
            break;
        case 2:
        case 3:
            m.activo = false;
            m.estado = venta ? 3 : 4;
            break;
        case 4:
            m.activo = r.chance(50);
            m.estado = m.activo ? 1 : 5;
            break;
        default:
            break;
        }
        mOps.push_back(o);
    }
}

void Demo::demandas()
{
    baseDem = maxOf("DEMANDAS", "CODIGO");
    lastDem = baseDem;
    const int c = int(mCli.size());
    mBusca.assign(size_t(c), {});
    if (c == 0) return;
    static const int famWeights[] = {55, 25, 4, 3, 8, 5};
    constexpr int nFlags = int(sizeof kDemandFlags / sizeof kDemandFlags[0]);
    std::array<bool, nFlags> wish{};
    auto flagAt = [](const char* column) {
        for (int i = 0; i < nFlags; ++i)
            if (std::strcmp(kDemandFlags[i], column) == 0) return i;
        throw std::logic_error(column);
    };
    const int iMuebles = flagAt("CMUEBLES");
    Inserter ins(d.datos, d.Transacion, "DEMANDAS");
    ins.keyedBy("CODIGO", "INTEGER");
    for (int j = 0; j < s.demandas; ++j) {
        const int ci = j < c ? j : r.range(0, c - 1);
        const Persona& cli = mCli[ci];
        const int fam = r.weighted(famWeights) + 1;
        const int op = r.range(0, 99) < (fam <= 2 ? 62 : 50) ? 1 : 2;
        const int tipo1 = pickTipo(fam);
        int tipo2 = -1;
        if (r.chance(40)) {
            tipo2 = pickTipo(fam);
            if (tipo2 == tipo1) tipo2 = -1;
        }
        const int town = r.chance(70) ? cli.town : randomTown();
        int town2 = -1;
        if (r.chance(25)) {
            town2 = randomTown();
            if (town2 == town || townAt(town2).province != townAt(town).province) town2 = -1;
        }
        int zona = 0;
        if (r.chance(30)) {
            const std::vector<int>& zs = mZonasDe[town];
            zona = mZonas[zs[r.range(0, int(zs.size()) - 1)]].codigo;
        }
        const Tipo& t = tipoAt(tipo1);
        const int m2 = metros(t);
        const qint64 precio = priceOf(tipo1, op, town, m2);
        const qint64 step = op == 1 ? 1000 : 10;
        const int up = r.range(105, 135);
        const qint64 hasta = std::max(step, (precio * up / 100 + step / 2) / step * step);
        QVariant desde;
        if (r.chance(70)) {
            const int low = r.range(50, 80);
            desde = double(precio * low / 100 / step * step);
        }
        const QVariant metrosDesde = r.chance(55) ? QVariant(m2 * 85 / 100) : QVariant();
        const QVariant metrosHasta = r.chance(20) ? QVariant(m2 * 160 / 100) : QVariant();
        QVariant habDesde, banosDesde;
        if (fam <= 2 && t.codigo != 5) {
            if (r.chance(60)) habDesde = std::clamp(m2 / 30, 1, 4);
            if (r.chance(35)) banosDesde = m2 > 100 ? 2 : 1;
        }
        wish.fill(false);
        for (const DemandFlag& dw : kDemandWishes)
            if (dw.family == fam || (dw.family == 0 && fam <= 2))
                if (r.chance(dw.percent)) wish[flagAt(dw.column)] = true;
        if (op == 2 && fam <= 2 && r.chance(30)) wish[iMuebles] = true;
        QDate alta = r.between(cli.alta, std::min(cli.alta.addDays(30), hoy));
        if (mBusca[ci].familia == 0) mBusca[ci] = {fam, op};

        ins.set("CODIGO", ++lastDem);
        ins.set("CODCLIENTE", cli.codigo);
        ins.set("CODAGENTE", cli.agente);
        ins.set("FECHAALTA", alta);
        ins.set("SITUACION", cli.situacion);
        ins.set("TELEFONO1", cli.movil);
        ins.set("TELEFONO2", orNull(cli.tel));
        ins.set("CODFAMILIA", fam);
        ins.set("CODOPERACION", op);
        ins.set("CODINMUEBLE1", t.codigo);
        ins.set("CODINMUEBLE2", tipo2 >= 0 ? QVariant(tipoAt(tipo2).codigo) : QVariant());
        ins.set("CODINMUEBLE3", QVariant());
        ins.set("POBLACION1", townName(town));
        ins.set("POBLACION2", town2 >= 0 ? QVariant(townName(town2)) : QVariant());
        ins.set("CODZONA", zona);
        for (const char* z :
             {"CODZONA2", "CODZONA3", "CODZONA4", "CODZONAA", "CODZONAB", "CODZONAC", "CODZONAD"})
            ins.literal(z, "0");
        ins.set("PRECIODESDE", desde);
        ins.set("PRECIOHASTA", double(hasta));
        ins.set("SDESDEMETROS", metrosDesde);
        ins.set("SHASTAMETROS", metrosHasta);
        ins.set("SDESDEHABITACIONES", habDesde);
        ins.set("SDESDEBANOS", banosDesde);
        for (int k = 0; k < nFlags; ++k)
            ins.set(kDemandFlags[k], sn(wish[k]));
        ins.exec();
    }
}

void Demo::descartes()
{
    baseDesc = maxOf("DESCARTES", "CODIGO");
    lastDesc = baseDesc;
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    if (n == 0 || c == 0) return;
    QHash<int, std::vector<int>> porBusca; // family * 10 + operation -> properties
    for (int i = 0; i < n; ++i)
        porBusca[tipoAt(mInm[i].tipo).familia * 10 + (mInm[i].op == 1 ? 1 : 2)].push_back(i);
    std::set<std::pair<int, int>> hechos;
    Inserter ins(d.datos, d.Transacion, "DESCARTES");
    for (int k = 0; k < s.descartes; ++k) {
        for (int tries = 0; tries < 20; ++tries) {
            const int ci = r.range(0, c - 1);
            const Busca& b = mBusca.empty() ? Busca{} : mBusca[ci];
            int pi;
            const auto it = porBusca.constFind(b.familia * 10 + b.op);
            if (b.familia > 0 && it != porBusca.constEnd() && !it->empty())
                pi = (*it)[r.range(0, int(it->size()) - 1)];
            else
                pi = r.range(0, n - 1);
            if (!hechos.insert({ci, pi}).second) continue;
            const QDate fecha = r.between(std::max(mCli[ci].alta, mInm[pi].alta), hoy);
            ins.set("CODIGO", ++lastDesc);
            ins.set("CODCLIENTE", mCli[ci].codigo);
            ins.set("CODINMUEBLE", mInm[pi].codigo);
            ins.set("FECHA", fecha);
            ins.set("MOTIVO", r.pick(w.motivosDescarte));
            ins.exec();
            break;
        }
    }
}

void Demo::gestiones()
{
    baseGest = maxOf("GESTIONES", "CODIGO");
    lastGest = baseGest;
    baseAgenda = std::max(maxOf("AGENDA", "CODIGO"), maxOf("AGENDAX", "ID"));
    lastAgenda = baseAgenda;
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    static const int gestionWeights[] = {30, 25, 6, 12, 2, 4, 6, 3, 2, 2, 7, 1};
    Inserter g(d.datos, d.Transacion, "GESTIONES");
    Inserter a(d.datos, d.Transacion, "AGENDA");
    auto agenda = [&](QDate fecha, const QString& h, bool hecho, const QString& texto, int agente,
                      int gestion) {
        a.set("CODIGO", ++lastAgenda);
        a.set("FECHA", fecha);
        a.set("HORA", h);
        a.set("ALARMA", kSi);
        a.set("REALIZADO", sn(hecho));
        a.set("TEXTO", texto.left(300));
        a.set("FECHAYHORA", at(fecha, h));
        a.set("USUARIO", mUsuarioDe.value(agente));
        a.set("CODGESTION", gestion);
        a.exec();
    };
    for (int k = 0; k < s.gestiones && (n > 0 || c > 0); ++k) {
        const int tipo = r.weighted(gestionWeights) + 1;
        const bool conInmueble = tipo == 2 || tipo == 3 || tipo == 7 || tipo == 8 || tipo == 9 || tipo == 10;
        const bool conCliente = tipo != 7 && tipo != 8;
        int pi = -1;
        int ci = -1;
        if (n > 0 && (conInmueble || r.chance(50))) pi = r.range(0, n - 1);
        if (c > 0 && conCliente) ci = r.range(0, c - 1);
        if (pi < 0 && ci < 0) {
            if (c > 0)
                ci = r.range(0, c - 1);
            else
                pi = r.range(0, n - 1);
        }
        QDate fecha = hoy.addDays(r.range(-540, 30));
        QDate earliest;
        if (pi >= 0) earliest = mInm[pi].alta;
        if (ci >= 0 && (!earliest.isValid() || mCli[ci].alta > earliest)) earliest = mCli[ci].alta;
        if (fecha < earliest) fecha = r.between(earliest, hoy.addDays(30));
        const QString h = hora();
        const bool futuro = fecha >= hoy;
        const bool pendiente = futuro || r.chance(8);
        const bool confirmada = r.chance(futuro ? 40 : 75);
        const int agente = pi >= 0 ? mInm[pi].agente : mCli[ci].agente;
        const int registrador = r.chance(80) ? agente : mAgentes.front().codigo;
        const QString cliente = ci >= 0 ? mCli[ci].apeynom : u8("el cliente");
        const QString codigo = pi >= 0 ? mInm[pi].codigo : QString();
        QString asunto;
        switch (tipo) {
        case 1:
            asunto = u8("Llamar a ") + cliente +
                     (pi >= 0 ? u8(" por el inmueble ") + codigo : u8(" para concertar visitas"));
            break;
        case 2:
            asunto = u8("Visita al inmueble ") + codigo + u8(" con ") + cliente;
            break;
        case 3: {
            const int pct = r.range(85, 97);
            asunto = u8("Oferta de ") +
                     Money::fromUnits(mInm[pi].precio * pct / 100 / 500 * 500).toSpanish(0, true) +
                     u8(" por el inmueble ") + codigo;
            break;
        }
        case 4:
            asunto = u8("Enviar por correo ") +
                     (pi >= 0 ? u8("la ficha del inmueble ") + codigo : u8("una selección de inmuebles")) +
                     u8(" a ") + cliente;
            break;
        case 5:
            asunto = u8("Carta de presentación de la agencia a ") + cliente;
            break;
        case 6:
            asunto = u8("Reunión en la oficina con ") + cliente;
            break;
        case 7:
            asunto =
                u8("Captación del inmueble ") + codigo +
                (mInm[pi].propietario >= 0 ? u8(" de ") + mProp[mInm[pi].propietario].apeynom : QString());
            break;
        case 8:
            asunto = u8("Tasación del inmueble ") + codigo;
            break;
        case 9:
            asunto = u8("Firma de la reserva del inmueble ") + codigo + u8(" con ") + cliente;
            break;
        case 10:
            asunto = u8("Firma en notaría del inmueble ") + codigo;
            break;
        case 11:
            asunto = u8("Seguimiento de la demanda de ") + cliente;
            break;
        default:
            asunto = u8("Revisar documentación con ") + cliente;
            break;
        }
        QString enlaces;
        if (pi >= 0) {
            const Inmueble& m = mInm[pi];
            enlaces += u8("Propiedad: ") + m.codigo + QLatin1Char(' ') + capital(tipoAt(m.tipo).nombre) +
                       QStringLiteral(", ") + m.direccion + QStringLiteral("\r\n");
            if (m.propietario >= 0)
                enlaces += u8("Propietario: ") + mProp[m.propietario].apeynom + QStringLiteral("\r\n");
        }
        if (ci >= 0) enlaces += u8("Cliente: ") + mCli[ci].apeynom + QStringLiteral("\r\n");
        const QString resultado = pendiente ? QString() : r.pick(w.resultadosGestion);
        const bool enAgenda = r.chance(fecha >= hoy.addDays(-10) ? 70 : 10);

        g.set("CODIGO", ++lastGest);
        g.set("CODTIPOGESTION", tipo);
        g.set("ASUNTO", asunto.left(100));
        g.set("FECHA", fecha);
        g.set("HORA", h);
        g.set("CODAGENTE", agente);
        g.set("CODAGENTE_REGISTRADOR", registrador);
        g.set("AGENDA", sn(enAgenda));
        g.set("CONFIRMADA", sn(confirmada));
        g.set("PENDIENTE", sn(pendiente));
        g.set("RESULTADO", orNull(resultado));
        g.set("CODORIGEN", ci >= 0 ? QVariant(mCli[ci].origen) : QVariant());
        g.set("CODCLIENTE", ci >= 0 ? QVariant(mCli[ci].codigo) : QVariant());
        g.set("CODINMUEBLE", orNull(codigo));
        g.set("TEXTO_AGENDA", enlaces.left(1000));
        g.exec();
        if (enAgenda) {
            const bool hecho = fecha < hoy.addDays(-1) && r.chance(80);
            agenda(fecha, h, hecho, asunto, agente, lastGest);
        }
    }
    // Reminders of each agent that come from no follow-up.
    if (s.gestiones > 0)
        for (const Agente& ag : mAgentes)
            for (int k = 0; k < 2; ++k) {
                const QDate fecha = hoy.addDays(r.range(-3, 20));
                const QString h = hora();
                agenda(fecha, h, false, r.pick(w.recordatorios), ag.codigo, 0);
            }
}

void Demo::operaciones()
{
    baseOp = maxOf("OPERACIONES", "CODOPERACION");
    lastOp = baseOp;
    Inserter ins(d.datos, d.Transacion, "OPERACIONES");
    for (const Operacion& o : mOps) {
        const Inmueble& m = mInm[o.inmueble];
        const Persona& c = mCli[o.cliente];
        const bool venta = m.op == 1 || m.op == 3;
        qint64 importe = m.precio;
        if (venta) {
            const int pct = r.range(92, 100);
            importe = std::max<qint64>(500, m.precio * pct / 100 / 500 * 500);
        }
        const double gastoFijo = venta ? double(r.range(3, 15) * 100) : double(importe);
        const double porcentaje = venta ? 3.0 : 0.0;
        const double gastoVariable = double(importe) * porcentaje / 100.0;
        const double total = gastoFijo + double(importe) + gastoVariable;
        double entrada = total;
        QVariant anos, interes, cuota;
        if (venta) {
            const int pct = r.range(20, 35);
            entrada = std::round(total * pct / 100.0);
            const int a = r.range(4, 6) * 5;
            const int i = r.range(220, 420);
            anos = a;
            interes = i / 100.0;
            cuota = d.cuotaMensual(i / 100.0, a, Money::fromDouble(total - entrada)).toDouble();
        }
        QString info = venta ? QStringLiteral("Compraventa con financiacion bancaria.")
                             : QStringLiteral("Contrato de arrendamiento con fianza de dos mensualidades.");
        ins.set("CODOPERACION", ++lastOp);
        ins.set("FECHAALTA", o.alta);
        ins.set("CODORIGEN", c.origen);
        ins.set("CODCLIENTE", c.codigo);
        ins.set("CODINMUEBLE", m.codigo);
        ins.set("FECHARESERVA", orNull(o.reserva));
        ins.set("FECHAACEPTA", orNull(o.acepta));
        ins.set("FECHAFINALIZA", orNull(o.finaliza));
        ins.set("FECHACANCELACION", orNull(o.cancela));
        ins.set("GASTOFIJO", gastoFijo);
        ins.set("GASTOVARIABLE", gastoVariable);
        ins.set("IMPORTEINMUEBLE", double(importe));
        ins.set("IMPORTEOPERACION", total);
        ins.set("IMPORTEENTRADA", entrada);
        ins.set("IMPORTEHIPOTECA", total - entrada);
        ins.set("ANOSHIPOTECA", anos);
        ins.set("INTERES", interes);
        ins.set("CUOTAHIPOTECA", cuota);
        ins.set("PORCENTAJE_VARIABLE", porcentaje);
        ins.set("INFORMACION", info);
        ins.set("OBSERVACIONES",
                o.estado == 4 ? QVariant(QStringLiteral("Operacion cancelada por el cliente.")) : QVariant());
        ins.set("CODAGENTE", m.agente);
        ins.set("ANOMES", o.alta.toString(QStringLiteral("yyyy/MM")));
        ins.set("TIPOOPERACION", operacionAt(m.op).nombre);
        ins.exec();
    }
}

void Demo::gastos()
{
    baseGasto = maxOf("INMUEBLES_GASTOS", "CODIGO");
    lastGasto = baseGasto;
    const int n = int(mInm.size());
    if (n == 0) return;
    std::vector<int> weights;
    for (const demo::ClaseGasto& g : w.gastos)
        weights.push_back(g.peso);
    const int wanted = std::min(std::max(0, s.gastos), 99999 - baseGasto);
    Inserter ins(d.datos, d.Transacion, "INMUEBLES_GASTOS");
    for (int k = 0; k < wanted; ++k) {
        const demo::ClaseGasto& cl = w.gastos[size_t(r.weighted(weights))];
        const Inmueble& m = mInm[r.range(0, n - 1)];
        const QDate fecha = r.between(m.alta, hoy);
        QString descripcion = r.pick(cl.conceptos);
        if (cl.tipo == QLatin1String("IBI"))
            descripcion += QLatin1Char(' ') + QString::number(fecha.year());
        else if (cl.tipo == QLatin1String("COMUNIDAD"))
            descripcion += QStringLiteral(" de ") + w.meses.at(fecha.month() - 1);
        const int cents = r.range(cl.min * 100, cl.max * 100);
        ins.set("CODIGO", pad(++lastGasto, 5));
        ins.set("CODINMUEBLE", m.codigo);
        ins.set("DESCRIPCION", descripcion.left(60));
        ins.set("FECHA", fecha);
        ins.set("IMPORTE", cents / 100.0);
        ins.set("TIPOGASTO", cl.tipo);
        ins.exec();
    }
}

} // namespace tv::demogen
