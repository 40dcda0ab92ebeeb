// Keeps the shell tests away from the user's own settings: QSettings of this
// binary live in a temporary folder.
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class SettingsSandbox : public ::testing::Environment {
public:
    void SetUp() override
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mDir.path());
    }

private:
    QTemporaryDir mDir;
};

const auto* const kSandbox = ::testing::AddGlobalTestEnvironment(new SettingsSandbox);

} // namespace
