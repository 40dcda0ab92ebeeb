#pragma once

#include <QString>

#include <memory>
#include <optional>

class QSettings;

namespace tv::ui {

// A grid's column widths and hidden columns, kept per screen and per user
// between runs, in the program's settings (QSettings, organisation and
// application "tejavista") under "rejillas/<screen>/<user>/<COLUMN>/".
// Widths are in pixels as the user left them. Writes stay in memory until
// Qt syncs the file (or sync() or the destructor runs), so dragging a column
// edge does not write the disk at every step.
class GridSettings {
public:
    GridSettings(const QString& screenKey, const QString& user);
    ~GridSettings();
    GridSettings(const GridSettings&) = delete;
    GridSettings& operator=(const GridSettings&) = delete;

    // The group every value of this screen and user sits under.
    QString group() const { return mGroup; }

    // Nothing when the user never resized the column.
    std::optional<int> width(const QString& column) const;
    void setWidth(const QString& column, int pixels);
    // Nothing when the user never chose.
    std::optional<bool> hidden(const QString& column) const;
    void setHidden(const QString& column, bool hidden);
    // Forgets this screen's choices for this user.
    void clear();
    void sync();

    // Where the values are kept: an .ini file instead of the user's settings
    // (tests keep theirs in a temporary folder); empty restores the default.
    static void setStorageFile(const QString& iniPath);
    static QString storageFile();

private:
    QString key(const QString& column, const char* what) const;

    QString mGroup;
    std::unique_ptr<QSettings> mStore;
};

} // namespace tv::ui
