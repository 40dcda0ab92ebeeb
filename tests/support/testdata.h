#pragma once

#include "dm.h"

#include <QTemporaryDir>

#include <memory>

namespace tv::test {

// The template data folder built once per run from sql/ (ctest builds it in
// a fixture and passes TEJAVISTA_TEST_TEMPLATE; a test binary run alone
// builds its own once per process).
QString templateFolder();

// A fresh data folder for one test: the template's files copied into a
// temporary folder, with a data module over it (connections opened unless
// told otherwise). Everything is removed when it goes.
class TestData {
public:
    explicit TestData(bool openConnections = true);
    ~TestData();
    QString folder() const { return mDir.path(); }
    Tdm& dm() { return *mDm; }

private:
    QTemporaryDir mDir;
    std::unique_ptr<Tdm> mDm;
};

} // namespace tv::test
