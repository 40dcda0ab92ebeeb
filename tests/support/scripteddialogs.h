#pragma once

#include "dialogs.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tv::test {

// Records every message and answers confirmations from a script (Yes when
// the script runs out, so an unexpected question is visible in the log).
// Installs itself for its lifetime.
class ScriptedDialogs : public ui::Dialogs {
public:
    enum class Kind { Warning, Error, Information, Confirmation };
    struct Entry {
        Kind kind;
        QString text;
    };

    ScriptedDialogs() { ui::Dialogs::install(this); }
    ~ScriptedDialogs() override { ui::Dialogs::install(nullptr); }

    void answer(bool yes) { mAnswers.append(yes); }

    void warning(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Warning, t}); }
    void error(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Error, t}); }
    void information(const QString& t, QWidget* = nullptr) override { mLog.append({Kind::Information, t}); }
    bool confirmation(const QString& t, QWidget* = nullptr) override
    {
        mLog.append({Kind::Confirmation, t});
        return mAnswers.isEmpty() ? true : mAnswers.takeFirst();
    }

    const QList<Entry>& log() const { return mLog; }
    QStringList texts() const
    {
        QStringList out;
        for (const Entry& e : mLog)
            out.append(e.text);
        return out;
    }
    void clear() { mLog.clear(); }

private:
    QList<Entry> mLog;
    QList<bool> mAnswers;
};

} // namespace tv::test
