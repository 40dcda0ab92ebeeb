#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace tv {
class Tdm;
}

namespace tv::test {

// A small believable agency for the report tests: the agency row with a
// logo, two agents, zones, an owner, three clients, one property of each
// sheet template with photographs, follow-ups, expenses, agenda events,
// operations and a demand.
class ReportFixture {
public:
    static void fill(Tdm& data);

    // INSERT INTO table (columns) VALUES (:columns) with the map's values.
    static void insert(Tdm& data, const QString& table, const QVariantMap& row);
    static void insertImage(Tdm& data, int id, int codInmueble, const QByteArray& picture);
    // A picture that looks like a photograph of a building (PNG bytes).
    static QByteArray photo(int variant, int width = 640, int height = 480);
    static QByteArray logo();
};

} // namespace tv::test
