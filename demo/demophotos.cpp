// Generated pictures of the demo properties.
#include "demointernal.h"

namespace tv::demogen {

namespace {

// ---------------------------------------------------------------- pictures

quint32 crc32(const QByteArray& data)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t{};
        for (quint32 n = 0; n < 256; ++n) {
            quint32 c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    quint32 c = 0xFFFFFFFFu;
    for (char ch : data)
        c = table[(c ^ quint8(ch)) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

void putBE(QByteArray& out, quint32 v)
{
    out.append(char(v >> 24));
    out.append(char(v >> 16));
    out.append(char(v >> 8));
    out.append(char(v));
}

void chunk(QByteArray& png, const char* type, const QByteArray& data)
{
    putBE(png, quint32(data.size()));
    QByteArray body(type, 4);
    body += data;
    png += body;
    putBE(png, crc32(body));
}

struct Escena {
    quint32 cielo, suelo, pared, tejado, ventana;
    int x0, x1, techo; // in thousandths of the picture
    bool bloque;       // a block of flats instead of a house
    int sol;
};

quint32 pixel(const Escena& e, int u, int v)
{
    auto mix = [](quint32 a, quint32 b, int t) { // t in 0..1000
        quint32 out = 0;
        for (int s = 0; s < 24; s += 8) {
            const int ca = int((a >> s) & 0xFF);
            const int cb = int((b >> s) & 0xFF);
            out |= quint32(ca + (cb - ca) * t / 1000) << s;
        }
        return out;
    };
    const int base = 860;
    if (u >= e.x0 && u <= e.x1 && v >= e.techo && v <= base) {
        const int w = e.x1 - e.x0;
        const int cu = (u - e.x0) * 1000 / std::max(1, w);
        const int cv = (v - e.techo) * 1000 / std::max(1, base - e.techo);
        const int mid = (e.x0 + e.x1) / 2;
        if (!e.bloque && std::abs(u - mid) < w / 10 && cv > 620) return 0x5A3A22; // door
        const int cols = e.bloque ? 5 : 3;
        const int rows = e.bloque ? 7 : 2;
        const int cx = cu * cols % 1000;
        const int cy = cv * rows % 1000;
        if (cx > 250 && cx < 750 && cy > 250 && cy < 700 && cv < 940) return e.ventana;
        return e.pared;
    }
    if (!e.bloque) {
        const int roof = (e.x1 - e.x0) * 45 / 100;
        const int top = e.techo - roof;
        const int mid = (e.x0 + e.x1) / 2;
        if (v >= top && v < e.techo) {
            const int half = (v - top) * ((e.x1 - e.x0) / 2 + 30) / std::max(1, roof);
            if (std::abs(u - mid) <= half) return e.tejado;
        }
    }
    if (v > 640) return mix(e.suelo, 0x000000, (v - 640) * 300 / 360);
    const int du = u - e.sol;
    const int dv = v - 160;
    if (du * du + dv * dv * 16 / 9 < 70 * 70) return 0xFFE680;
    return mix(e.cielo, 0xFFFFFF, v * 700 / 640);
}

QByteArray png(const Escena& e, int w, int h)
{
    QByteArray raw;
    raw.reserve((w * 3 + 1) * h);
    for (int y = 0; y < h; ++y) {
        raw.append(char(0));
        for (int x = 0; x < w; ++x) {
            const quint32 c = pixel(e, x * 1000 / w, y * 1000 / h);
            raw.append(char(c >> 16));
            raw.append(char(c >> 8));
            raw.append(char(c));
        }
    }
    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    QByteArray ihdr;
    putBE(ihdr, quint32(w));
    putBE(ihdr, quint32(h));
    ihdr.append(char(8)); // bit depth
    ihdr.append(char(2)); // RGB
    ihdr.append(3, char(0));
    chunk(out, "IHDR", ihdr);
    chunk(out, "IDAT", qCompress(raw, 6).mid(4)); // qCompress prefixes the length to a zlib stream
    chunk(out, "IEND", QByteArray());
    return out;
}

} // namespace

void Demo::planFotos()
{
    const int n = int(mInm.size());
    const int wanted = std::min(std::max(0, s.inmueblesConFotos), n);
    int done = 0;
    for (int tries = 0; done < wanted && tries < wanted * 20; ++tries) {
        const int x = r.range(0, n - 1);
        if (!mInm[x].fotos) {
            mInm[x].fotos = true;
            ++done;
        }
    }
}

void Demo::fotos()
{
    baseFoto = maxOf("IMAGENES", "ID", &d.Imagenes);
    lastFoto = baseFoto;
    const bool mini =
        Query::scalar(
            d.Imagenes, d.Transacion,
            QStringLiteral("SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'IMAGENES' "
                           "AND RDB$FIELD_NAME = 'PICTURE_MINI'"))
            .toInt() > 0;
    static const quint32 paredes[] = {0xF2E6D0, 0xFFFFFF, 0xE8D5B5, 0xF5DEB3, 0xD9C7A7, 0xEFE3C8, 0xE4B98E};
    static const quint32 tejados[] = {0xB5462F, 0x9E3B26, 0x8A4B2A, 0xA0522D};
    static const quint32 cielos[] = {0x4A90D9, 0x5FA8E8, 0x3F7FBF, 0x6CB4EE};
    static const quint32 suelos[] = {0x6B8E23, 0x8FBC5A, 0xC2A46B, 0x9C8A5A};
    static const quint32 ventanas[] = {0x2F4F6F, 0x3B5F7F, 0x28425A};
    Inserter ins(d.Imagenes, d.Transacion, "IMAGENES");
    for (const Inmueble& m : mInm) {
        if (!m.fotos) continue;
        const int fam = tipoAt(m.tipo).familia;
        const int count = r.range(1, 4);
        for (int p = 0; p < count; ++p) {
            Escena e;
            e.cielo = cielos[r.range(0, 3)];
            e.suelo = suelos[r.range(0, 3)];
            e.pared = paredes[r.range(0, 6)];
            e.tejado = tejados[r.range(0, 3)];
            e.ventana = ventanas[r.range(0, 2)];
            e.bloque = fam == 1 || fam == 5 || fam == 7;
            e.x0 = r.range(100, 380);
            e.x1 = std::min(950, e.x0 + r.range(300, 520));
            e.techo = e.bloque ? r.range(80, 250) : r.range(380, 520);
            e.sol = r.range(80, 920);
            ins.set("ID", ++lastFoto);
            ins.set("CODINMUEBLE", m.codigo.toInt());
            ins.set("FECHA", m.alta);
            ins.set("GRAPHICCLASS", QStringLiteral("TPngImage"));
            ins.set("PICTURE", png(e, 320, 240));
            if (mini) ins.set("PICTURE_MINI", png(e, 96, 72));
            ins.exec();
        }
    }
}

} // namespace tv::demogen
