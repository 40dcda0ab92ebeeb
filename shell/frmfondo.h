#pragma once

#include <QDialog>

class QListWidget;

namespace tv::shell {

// Chooses the main window's background among the pictures of fondos/
// (or none). The choice is the picture's file name, empty for none.
class TfrmFondo : public QDialog {
    Q_OBJECT
public:
    TfrmFondo(const QString& folder, const QString& current, QWidget* parent = nullptr);
    QString choice() const;
    QListWidget* list() const { return mList; }

    // Picture files of a folder, by name.
    static QStringList pictures(const QString& folder);

private:
    QListWidget* mList;
};

} // namespace tv::shell
