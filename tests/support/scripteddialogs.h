#pragma once

#include "dialogs.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace tv::test {

// What every test binary has installed while no ScriptedDialogs is alive:
// any message at all fails the running test, and a question is answered No.
class FailingDialogs : public ui::Dialogs {
public:
    void warning(const QString& t, QWidget* = nullptr) override { unexpected("warning", t); }
    void error(const QString& t, QWidget* = nullptr) override { unexpected("error", t); }
    void information(const QString& t, QWidget* = nullptr) override { unexpected("information", t); }
    bool confirmation(const QString& t, QWidget* = nullptr) override
    {
        unexpected("confirmation", t);
        return false;
    }

private:
    static void unexpected(const char* kind, const QString& t)
    {
        ADD_FAILURE() << "unscripted " << kind << ": " << t.toStdString();
    }
};

// Records every message and answers the questions the test scripted, in order.
// Installs itself for its lifetime. It fails the test when
// - a question arrives that no answer() was scripted for (answered No);
// - an answer was scripted and never asked for;
// - a warning, error or information arrived after the test last read the
//   log (log(), texts(), clear()): a message nobody looked at is a message
//   nobody checked.
class ScriptedDialogs : public ui::Dialogs {
public:
    enum class Kind { Warning, Error, Information, Confirmation };
    struct Entry {
        Kind kind;
        QString text;
    };

    ScriptedDialogs() : mPrevious(&ui::Dialogs::instance()) { ui::Dialogs::install(this); }
    ~ScriptedDialogs() override
    {
        ui::Dialogs::install(mPrevious);
        for (bool a : mAnswers)
            ADD_FAILURE() << "scripted answer " << (a ? "Yes" : "No") << " was never asked for";
        // A question answered from the script was expected; a message must be read.
        for (qsizetype i = mSeen; i < mLog.size(); ++i)
            if (mLog.at(i).kind != Kind::Confirmation)
                ADD_FAILURE() << "message nobody checked: " << mLog.at(i).text.toStdString();
    }
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    void answer(bool yes) { mAnswers.append(yes); }
    qsizetype pendingAnswers() const { return mAnswers.size(); }

    void warning(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Warning, t}); }
    void error(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Error, t}); }
    void information(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Information, t}); }
    bool confirmation(const QString& t, QWidget* = nullptr) override
    {
        mLog.append({Kind::Confirmation, t});
        if (mAnswers.isEmpty()) {
            ADD_FAILURE() << "unscripted confirmation: " << t.toStdString();
            return false;
        }
        return mAnswers.takeFirst();
    }

    const QList<Entry>& log() const
    {
        mSeen = mLog.size();
        return mLog;
    }
    QStringList texts() const
    {
        QStringList out;
        for (const Entry& e : log())
            out.append(e.text);
        return out;
    }
    void clear()
    {
        mLog.clear();
        mSeen = 0;
    }

private:
    ui::Dialogs* mPrevious;
    QList<Entry> mLog;
    mutable qsizetype mSeen = 0;
    QList<bool> mAnswers;
};

} // namespace tv::test
