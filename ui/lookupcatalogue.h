#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

namespace tv {
class Database;
class Transaction;
}

namespace tv::ui {

struct LookupItem {
    QVariant code;
    QString description;
    QVariant parent; // the parent value the item belongs to (a zone's municipality)
};

// The named code -> description catalogues the screens offer in drop-downs
// and grids show as text: zones, states, property types, families...
// Each is read once per database and kept until its table changes here
// (a screen saved it), or for a minute, so another workstation's new entries
// show up too. Lives on the interface thread.
class Lookups {
public:
    struct Definition {
        QString name;  // "zonas", "tipoinmueble"...
        QString table; // the table whose changes reload it
        // Select of code, description and, for filtered lookups, the parent value.
        QString sql;
    };

    static Lookups& instance();

    // Adds or replaces a catalogue.
    void define(const Definition& d);
    const Definition* definition(const QString& name) const;
    QStringList names() const;

    // The items in the select's order; with a valid parent only that parent's items.
    QList<LookupItem> items(Database& db, Transaction& tr, const QString& name, const QVariant& parent = {});
    // The description of one code (empty for an unknown code or a NULL).
    QString description(Database& db, Transaction& tr, const QString& name, const QVariant& code);
    // Forgets every catalogue read from table, in every database.
    void changed(const QString& table);
    void clear();

    // How long a catalogue is trusted without a change seen here.
    static constexpr int kSecondsValid = 60;

private:
    Lookups();
    struct Cached {
        QList<LookupItem> items;
        QDateTime readAt;
    };
    const QList<LookupItem>& load(Database& db, Transaction& tr, const Definition& d);

    QList<Definition> mDefs;
    QHash<QString, Cached> mCache; // by database name + catalogue name
};

inline Lookups& lookups()
{
    return Lookups::instance();
}

// The text two codes compare by: trimmed, so CHAR padding and numbers read
// as text match their integers.
QString lookupKey(const QVariant& code);

} // namespace tv::ui
