#pragma once

#include <QHash>
#include <QTabWidget>

class QAction;
class QComboBox;
class QMenu;
class QToolButton;

namespace tv::shell {

// The command ribbon: one tab per page, framed groups with their caption
// underneath, big and small tool buttons, drop-down buttons and the
// language box, all built in one loop from ribbonItems(). Every button and
// menu entry sends commandTriggered(command); the main window dispatches.
// An application menu sits at the left of the tabs.
class Ribbon : public QTabWidget {
    Q_OBJECT
public:
    explicit Ribbon(QWidget* parent = nullptr);

    QAction* actionFor(const QString& command) const { return mActions.value(command); }
    QToolButton* buttonFor(const QString& command) const { return mButtons.value(command); }
    QComboBox* languageBox() const { return mLanguage; }
    QMenu* applicationMenu() const { return mAppMenu; }
    QToolButton* applicationButton() const { return mAppButton; }

    void setCommandVisible(const QString& command, bool visible);
    bool isCommandVisible(const QString& command) const;

    // What the user can read: page titles, group captions, and the captions
    // of buttons and menu entries.
    QStringList pageTitles() const;
    QStringList groupCaptions() const;
    QStringList captions() const;

Q_SIGNALS:
    void commandTriggered(const QString& command);

private:
    QAction* makeAction(const QString& command, const QString& caption, const QIcon& icon);
    QWidget* buildPage(const QString& page);
    QWidget* buildGroup(const QString& page, const QString& group);
    void buildApplicationMenu();

    QHash<QString, QAction*> mActions;
    QHash<QString, QToolButton*> mButtons;
    QHash<QString, QMenu*> mMenus;
    QStringList mGroupCaptions;
    QComboBox* mLanguage = nullptr;
    QString mLanguageCaption;
    QMenu* mAppMenu = nullptr;
    QToolButton* mAppButton = nullptr;
};

} // namespace tv::shell
