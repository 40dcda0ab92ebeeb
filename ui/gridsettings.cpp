#include "gridsettings.h"

#include <QSettings>

namespace tv::ui {

namespace {

QString gStorageFile;

// A name that cannot open another level of the settings' tree.
QString keyPart(const QString& s)
{
    QString out = s.trimmed();
    out.replace(QLatin1Char('/'), QLatin1Char('_'));
    out.replace(QLatin1Char('\\'), QLatin1Char('_'));
    return out.isEmpty() ? QStringLiteral("_") : out;
}

std::unique_ptr<QSettings> openStore()
{
    if (!gStorageFile.isEmpty())
        return std::make_unique<QSettings>(gStorageFile, QSettings::IniFormat);
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tejavista"),
                                       QStringLiteral("tejavista"));
}

} // namespace

GridSettings::GridSettings(const QString& screenKey, const QString& user)
    : mGroup(QStringLiteral("rejillas/%1/%2").arg(keyPart(screenKey), keyPart(user))), mStore(openStore())
{
}

GridSettings::~GridSettings() = default;

QString GridSettings::key(const QString& column, const char* what) const
{
    return mGroup + QLatin1Char('/') + keyPart(column.toUpper()) + QLatin1Char('/') + QLatin1String(what);
}

std::optional<int> GridSettings::width(const QString& column) const
{
    bool ok = false;
    const int w = mStore->value(key(column, "ancho")).toInt(&ok);
    if (!ok || w <= 0)
        return std::nullopt;
    return w;
}

void GridSettings::setWidth(const QString& column, int pixels)
{
    if (pixels > 0)
        mStore->setValue(key(column, "ancho"), pixels);
}

std::optional<bool> GridSettings::hidden(const QString& column) const
{
    const QVariant v = mStore->value(key(column, "oculta"));
    if (!v.isValid())
        return std::nullopt;
    return v.toBool();
}

void GridSettings::setHidden(const QString& column, bool hidden)
{
    mStore->setValue(key(column, "oculta"), hidden);
}

void GridSettings::clear()
{
    mStore->remove(mGroup);
}

void GridSettings::sync()
{
    mStore->sync();
}

void GridSettings::setStorageFile(const QString& iniPath)
{
    gStorageFile = iniPath;
}

QString GridSettings::storageFile()
{
    if (!gStorageFile.isEmpty())
        return gStorageFile;
    return openStore()->fileName();
}

} // namespace tv::ui
