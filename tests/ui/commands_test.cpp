// The command table: how the ribbon starts screens without knowing them.
#include "commands.h"
#include "dberror.h"
#include "scripteddialogs.h"

#include <QCoreApplication>
#include <QEvent>

#include <QDialog>
#include <QPointer>
#include <gtest/gtest.h>

using namespace tv;

namespace {

struct Host : ui::CommandHost {
    QWidget* hostWidget() override { return &window; }
    void showChild(QWidget* screen) override
    {
        children.append(screen);
        screen->show();
    }
    QWidget window;
    QList<QPointer<QWidget>> children;
};

class Commands : public ::testing::Test {
protected:
    void SetUp() override { ui::commands().clear(); }
    void TearDown() override
    {
        ui::commands().clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    Host host;
};

} // namespace

TEST_F(Commands, ARowIsFoundByItsIdAndAddingAgainReplacesIt)
{
    int made = 0;
    ui::commands().add({QStringLiteral("bancos"), [&](QWidget*) -> QWidget* {
                            ++made;
                            return nullptr;
                        }});
    ui::commands().add({QStringLiteral("municipios"), {}});
    ui::commands().add({QStringLiteral("bancos"), [&](QWidget*) -> QWidget* {
                            made += 10;
                            return nullptr;
                        }});
    EXPECT_EQ(ui::commands().ids(), (QStringList{QStringLiteral("bancos"), QStringLiteral("municipios")}));
    EXPECT_TRUE(ui::commands().contains(QStringLiteral("bancos")));
    EXPECT_FALSE(ui::commands().contains(QStringLiteral("inmuebles")));
    EXPECT_TRUE(ui::commands().run(QStringLiteral("bancos"), host));
    EXPECT_EQ(made, 10);
    EXPECT_FALSE(ui::commands().run(QStringLiteral("inmuebles"), host));
}

TEST_F(Commands, TheRightsCheckRunsFirstAndARefusalMakesNoScreen)
{
    bool allow = false;
    int made = 0;
    ui::Command c{QStringLiteral("agentes"), [&](QWidget* parent) -> QWidget* {
                      ++made;
                      EXPECT_EQ(parent, &host.window);
                      return new QDialog(parent);
                  }};
    c.allowed = [&](QWidget* parent) {
        EXPECT_EQ(parent, &host.window);
        return allow;
    };
    ui::commands().add(c);
    QList<QDialog*> shown;
    ui::commands().setModalRunner([&](QDialog* d) {
        shown.append(d);
        d->close();
    });
    EXPECT_FALSE(ui::commands().run(QStringLiteral("agentes"), host));
    EXPECT_EQ(made, 0);
    allow = true;
    EXPECT_TRUE(ui::commands().run(QStringLiteral("agentes"), host));
    EXPECT_EQ(made, 1);
    ASSERT_EQ(shown.size(), 1);
    // Closed, so the next start makes a new one.
    EXPECT_EQ(ui::commands().openScreen(QStringLiteral("agentes")), nullptr);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("agentes"), host));
    EXPECT_EQ(made, 2);
}

TEST_F(Commands, AChildScreenIsOpenedOnceAndBroughtForwardAfterwards)
{
    int made = 0;
    ui::Command c{QStringLiteral("inmuebles"), [&](QWidget*) -> QWidget* {
                      ++made;
                      return new QWidget;
                  },
                  ui::OpenAs::Child};
    ui::commands().add(c);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("inmuebles"), host));
    EXPECT_TRUE(ui::commands().run(QStringLiteral("inmuebles"), host));
    EXPECT_EQ(made, 1);
    ASSERT_EQ(host.children.size(), 1);
    EXPECT_EQ(ui::commands().openScreen(QStringLiteral("inmuebles")), host.children.at(0).data());
    EXPECT_TRUE(host.children.at(0)->testAttribute(Qt::WA_DeleteOnClose));

    host.children.at(0)->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(ui::commands().openScreen(QStringLiteral("inmuebles")), nullptr);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("inmuebles"), host));
    EXPECT_EQ(made, 2);

    // Several at once when the row says so.
    ui::Command many{QStringLiteral("fichas"), [&](QWidget*) -> QWidget* { return new QWidget; }, ui::OpenAs::Child,
                     false};
    ui::commands().add(many);
    ui::commands().run(QStringLiteral("fichas"), host);
    ui::commands().run(QStringLiteral("fichas"), host);
    EXPECT_EQ(host.children.size(), 4);
    for (const QPointer<QWidget>& w : host.children)
        delete w.data();
}

TEST_F(Commands, AnActionRunsInsteadOfAScreenAndFailuresReachTheCaller)
{
    int ran = 0;
    ui::Command calc{QStringLiteral("calculadora-hipotecaria"), {}};
    calc.action = [&](QWidget* parent) {
        EXPECT_EQ(parent, &host.window);
        ++ran;
    };
    ui::commands().add(calc);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("calculadora-hipotecaria"), host));
    EXPECT_EQ(ran, 1);

    ui::Command broken{QStringLiteral("roto"), [](QWidget*) -> QWidget* { throw tv::Abort(); }};
    ui::commands().add(broken);
    EXPECT_THROW(ui::commands().run(QStringLiteral("roto"), host), tv::Abort);
    EXPECT_EQ(ui::commands().openScreen(QStringLiteral("roto")), nullptr);
}
