// The calendar window: the fields the user fills, the buttons, the method.
#include "app/frm_calendrier.h"
#include "support/services_faux.h"
#include "text/messages.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace sylvane;

TEST(FrmCalendrierQt, ConvertsBothWaysFromTheFields) {
    static int argc = 1;
    static char* argv[] = {const_cast<char*>("t")};
    if (!qApp) new QApplication(argc, argv);
    std::map<int, std::string> mois;
    for (int i = 0; i < 12; ++i) mois[730 + i] = "m" + std::to_string(i + 1);
    DefinitMessages(mois);

    test::BoitesFausses boites;
    FrmCalendrierQt f(boites);
    EXPECT_EQ(f.moisG()->currentText(), "m9");
    EXPECT_EQ(f.jourR()->text(), "1");

    f.jourG()->setText("1");
    f.moisG()->setCurrentIndex(0);
    f.anneeG()->setCurrentText("1793");
    QTest::mouseClick(f.cmdGR(), Qt::LeftButton);
    EXPECT_EQ(f.jourR()->text(), "12");
    EXPECT_EQ(f.moisR()->currentIndex(), 3);
    EXPECT_EQ(f.anneeR()->currentText(), "I");

    // Enter in the Republican day converts the other way, with the exact
    // method; a day out of range shows its message and changes nothing.
    f.calcul()->setChecked(true);
    f.jourR()->setText("6");
    f.moisR()->setCurrentIndex(12);
    f.anneeR()->setCurrentText("III");
    QTest::keyClick(f.jourR(), Qt::Key_Return);
    EXPECT_EQ(f.jourG()->text(), "22");
    EXPECT_EQ(f.moisG()->currentText(), "m9");
    EXPECT_EQ(f.anneeG()->currentText(), "1795");
    f.jourR()->setText("40");
    QTest::mouseClick(f.cmdRG(), Qt::LeftButton);
    EXPECT_EQ(boites.informations, std::vector<int>{726});
    EXPECT_EQ(f.jourG()->text(), "22");
    DefinitMessages({});
}
