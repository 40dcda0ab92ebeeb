#pragma once

#include <QLineEdit>

namespace tv::shell {

// The password box of the login: a typed space works as backspace, so a
// password can never hold a space (pasted spaces are dropped too).
class PasswordEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit PasswordEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tv::shell
