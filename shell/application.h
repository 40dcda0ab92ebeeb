#pragma once

class QApplication;

namespace tv::shell {

// The program from start to exit: data path, locale, single instance,
// splash, data module, main window, event loop. Returns the exit code.
int run(QApplication& app);

// Names, icon theme and Spanish texts of Qt's own dialogs.
void prepareApplication(QApplication& app);

} // namespace tv::shell
