#include "frminicio.h"

#include <QTimer>
#include <gtest/gtest.h>

using tv::shell::TfrmInicio;

TEST(Splash, ClosesItselfOnItsFirstTick)
{
    TfrmInicio splash;
    EXPECT_TRUE(splash.isModal());
    EXPECT_TRUE(splash.timer()->isActive());
    splash.show();
    splash.Timer1Timer();
    EXPECT_FALSE(splash.isVisible());
    EXPECT_EQ(splash.result(), int(QDialog::Accepted));
    EXPECT_FALSE(splash.timer()->isActive()) << "one tick only";
}
