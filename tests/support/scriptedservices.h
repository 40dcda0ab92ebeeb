#pragma once

#include "services.h"

#include <QAbstractItemModel>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace tv::test {

// For a test binary's main: any file dialog, export or printing fails the
// running test (and is answered "cancelled"), as FailingDialogs does for messages.
class FailingServices : public ui::Services {
public:
    QString chooseOpenFile(const QString& title, const QString&, const QString&, QWidget* = nullptr) override
    {
        return unexpected("chooseOpenFile", title);
    }
    QString chooseSaveFile(const QString& title, const QString&, const QString&, QWidget* = nullptr) override
    {
        return unexpected("chooseSaveFile", title);
    }
    QString chooseFolder(const QString& title, const QString&, QWidget* = nullptr) override
    {
        return unexpected("chooseFolder", title);
    }
    void exportGrid(const QAbstractItemModel&, const QString& sheetName, QWidget* = nullptr) override
    {
        unexpected("exportGrid", sheetName);
    }
    void preview(const QString& templateName, const QVariantMap&, QWidget* = nullptr) override
    {
        unexpected("preview", templateName);
    }
    bool print(const QString& templateName, const QVariantMap&, QWidget* = nullptr) override
    {
        unexpected("print", templateName);
        return false;
    }

private:
    static QString unexpected(const char* kind, const QString& what)
    {
        ADD_FAILURE() << "unscripted " << kind << ": " << what.toStdString();
        return {};
    }
};

// Records every request a screen makes of the desktop and answers the ones
// the test scripted, in order. Installs itself for its lifetime and puts the
// previous service back when it goes. It fails the test when
// - a file or folder is asked for and no fileAnswer() was scripted;
// - print() is called and no printAnswer() was scripted;
// - a scripted answer was never asked for;
// - a call arrived after the test last read calls(): a request nobody looked
//   at is a request nobody checked.
// An exported model is copied when it arrives (every row, fetched to the end,
// as the real export does), so the test reads it after the grid is gone.
class ScriptedServices : public ui::Services {
public:
    enum class Kind { OpenFile, SaveFile, Folder, ExportGrid, Preview, Print };
    struct Call {
        Kind kind;
        QString name;   // dialog title, sheet name or template name
        QString detail; // the folder or suggested file, then the filter ("|" between)
        QVariantMap data;
        // ExportGrid: the model as it was exported.
        QStringList headers;
        QList<QStringList> texts;   // what the grid shows (DisplayRole)
        QList<QVariantList> values; // what a spreadsheet receives (EditRole)
        int rows() const { return int(texts.size()); }
        int columns() const { return int(headers.size()); }
    };

    ScriptedServices() : mPrevious(&ui::Services::instance()) { ui::Services::install(this); }
    ~ScriptedServices() override
    {
        ui::Services::install(mPrevious);
        for (const QString& f : mFiles)
            ADD_FAILURE() << "scripted file \"" << f.toStdString() << "\" was never asked for";
        for (bool p : mPrints)
            ADD_FAILURE() << "scripted print answer " << (p ? "true" : "false") << " was never asked for";
        for (qsizetype i = mSeen; i < mCalls.size(); ++i)
            ADD_FAILURE() << "call nobody checked: " << mCalls.at(i).name.toStdString();
    }
    ScriptedServices(const ScriptedServices&) = delete;
    ScriptedServices& operator=(const ScriptedServices&) = delete;

    // The next file or folder the user picks; empty: he cancels.
    void fileAnswer(const QString& path) { mFiles.append(path); }
    // The next print: true printed, false cancelled.
    void printAnswer(bool printed) { mPrints.append(printed); }

    QString chooseOpenFile(const QString& title, const QString& folder, const QString& filter,
                           QWidget* = nullptr) override
    {
        return file(Kind::OpenFile, title, folder + QLatin1Char('|') + filter);
    }
    // Several files: the scripted answer holds them one per line.
    QStringList chooseOpenFiles(const QString& title, const QString& folder, const QString& filter,
                                QWidget* = nullptr) override
    {
        const QString answer = file(Kind::OpenFile, title, folder + QLatin1Char('|') + filter);
        return answer.isEmpty() ? QStringList() : answer.split(QLatin1Char('\n'));
    }
    QString chooseSaveFile(const QString& title, const QString& suggested, const QString& filter,
                           QWidget* = nullptr) override
    {
        return file(Kind::SaveFile, title, suggested + QLatin1Char('|') + filter);
    }
    QString chooseFolder(const QString& title, const QString& folder, QWidget* = nullptr) override
    {
        return file(Kind::Folder, title, folder);
    }
    void exportGrid(const QAbstractItemModel& model, const QString& sheetName, QWidget* = nullptr) override
    {
        Call c{Kind::ExportGrid, sheetName, {}, {}, {}, {}, {}};
        auto& source = const_cast<QAbstractItemModel&>(model);
        while (source.canFetchMore({}))
            source.fetchMore({});
        for (int col = 0; col < model.columnCount(); ++col)
            c.headers.append(model.headerData(col, Qt::Horizontal, Qt::DisplayRole).toString());
        for (int r = 0; r < model.rowCount(); ++r) {
            QStringList texts;
            QVariantList values;
            for (int col = 0; col < model.columnCount(); ++col) {
                const QModelIndex i = model.index(r, col);
                texts.append(model.data(i, Qt::DisplayRole).toString());
                values.append(model.data(i, Qt::EditRole));
            }
            c.texts.append(texts);
            c.values.append(values);
        }
        mCalls.append(c);
    }
    void preview(const QString& templateName, const QVariantMap& data, QWidget* = nullptr) override
    {
        mCalls.append(Call{Kind::Preview, templateName, {}, data, {}, {}, {}});
    }
    bool print(const QString& templateName, const QVariantMap& data, QWidget* = nullptr) override
    {
        mCalls.append(Call{Kind::Print, templateName, {}, data, {}, {}, {}});
        if (mPrints.isEmpty()) {
            ADD_FAILURE() << "unscripted print: " << templateName.toStdString();
            return false;
        }
        return mPrints.takeFirst();
    }

    const QList<Call>& calls() const
    {
        mSeen = mCalls.size();
        return mCalls;
    }
    void clear()
    {
        mCalls.clear();
        mSeen = 0;
    }

private:
    QString file(Kind kind, const QString& title, const QString& detail)
    {
        mCalls.append(Call{kind, title, detail, {}, {}, {}, {}});
        if (mFiles.isEmpty()) {
            ADD_FAILURE() << "unscripted file choice: " << title.toStdString();
            return {};
        }
        return mFiles.takeFirst();
    }

    ui::Services* mPrevious;
    QList<Call> mCalls;
    mutable qsizetype mSeen = 0;
    QStringList mFiles;
    QList<bool> mPrints;
};

} // namespace tv::test
