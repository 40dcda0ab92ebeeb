#pragma once

#include <QDialog>

class QTimer;

namespace tv::shell {

// The splash window shown while the program starts. Modal; it closes itself
// on the first tick of its timer.
class TfrmInicio : public QDialog {
    Q_OBJECT
public:
    explicit TfrmInicio(QWidget* parent = nullptr);
    QTimer* timer() const { return mTimer; }

public Q_SLOTS:
    void Timer1Timer();

private:
    QTimer* mTimer;
};

} // namespace tv::shell
