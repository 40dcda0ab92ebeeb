#pragma once

#include <QString>

#include <functional>

namespace tv {

class Tdm;

// Creates a complete data folder: DATOS with the three database files and
// their seed rows, ARCHIVOS with its sub-folders, and the "libreria.dll"
// marker of local mode. Refuses (DataFolderError) a folder that already
// holds data. The folder is opened with the embedded engine.
struct DataFolderOptions {
    bool seedMunicipios = true;
    bool localMarker = true;
    // Extra work on the new files before they are closed (the demo agency).
    std::function<void(Tdm&)> fill;
};

class DataFolderError : public std::runtime_error {
public:
    explicit DataFolderError(const QString& m) : std::runtime_error(m.toStdString()), mMessage(m) {}
    QString message() const { return mMessage; }

private:
    QString mMessage;
};

void createDataFolder(const QString& folder, const DataFolderOptions& options = {});

// Text of one of the bundled schema scripts ("datos.sql", ...).
QString bundledSql(const QString& name);

// True when the folder already holds any of the three database files.
bool folderHasData(const QString& folder);

} // namespace tv
