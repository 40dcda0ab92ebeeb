#pragma once

#include <QString>

class QWidget;

namespace tv::ui {

// The only way a screen shows a message. The program installs message boxes;
// tests install a scripted recorder that keeps every text and answers the
// confirmations, so the exact Spanish texts can be asserted without a window.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual void warning(const QString& text, QWidget* parent = nullptr) = 0;
    virtual void error(const QString& text, QWidget* parent = nullptr) = 0;
    virtual void information(const QString& text, QWidget* parent = nullptr) = 0;
    // Yes/No; true only on Yes.
    virtual bool confirmation(const QString& text, QWidget* parent = nullptr) = 0;

    // The service in use (message boxes unless another was installed).
    static Dialogs& instance();
    // Installs d (not owned); nullptr restores the message boxes.
    static void install(Dialogs* d);
};

inline Dialogs& dialogs()
{
    return Dialogs::instance();
}

// Production: QMessageBox with the program's title.
class MessageBoxDialogs : public Dialogs {
public:
    void warning(const QString& text, QWidget* parent = nullptr) override;
    void error(const QString& text, QWidget* parent = nullptr) override;
    void information(const QString& text, QWidget* parent = nullptr) override;
    bool confirmation(const QString& text, QWidget* parent = nullptr) override;
};

} // namespace tv::ui
