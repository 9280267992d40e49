// The settings store and the memory of the frame's position.
#include <QFile>
#include <QSettings>
#include <initializer_list>
#include <utility>

#include "chess/board.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

class SettingsTest : public FrameTest {
protected:
    // What an earlier run that remembered the frame left: "T" and the numbers.
    static void Remembered(std::initializer_list<std::pair<const char*, int>> numbers) {
        SaveSettingText("Forms", "SmartForms", "T");
        for (const auto& [key, value] : numbers) SaveSettingNumber("Forms", key, value);
    }
    void CloseFrame() {
        ASSERT_TRUE(frame->close());
        frame.reset();
        FlushDeletes();
        AppClosing = false;
    }
};

}  // namespace

TEST_F(SettingsTest, TheStoreKeepsEachValuesKindBetweenRunsAndGivesDefaultsOtherwise) {
    EXPECT_EQ(GetSettingText("NoSuchSection", "Nothing"), "");
    EXPECT_EQ(GetSettingNumber("Forms", "Nothing"), 0);
    SaveSettingNumber("Forms", "Number", -1234567);
    SaveSettingText("Forms", "Digits", "34");
    SaveSettingText("Forms", "Nul", QString("ab") + QChar(0) + "cd");
    SettingsStore().setValue("Forms/Huge", QVariant::fromValue<qlonglong>(1LL << 40));
    {  // another run reads the file as the last one left it
        QSettings store = SettingsStore();
        store.sync();
        QFile file(store.fileName());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("\n");
    }
    SettingsStore().sync();
    EXPECT_EQ(GetSettingNumber("Forms", "Number"), -1234567);
    EXPECT_EQ(GetSettingText("Forms", "Number"), "");
    EXPECT_EQ(GetSettingText("Forms", "Digits"), "34");
    EXPECT_EQ(GetSettingNumber("Forms", "Digits"), 0);
    EXPECT_EQ(GetSettingText("Forms", "Nul"), "ab") << "the text ends at its first NUL";
    EXPECT_EQ(GetSettingNumber("Forms", "Huge"), 0) << "only a 32-bit value is a number";
}

TEST_F(SettingsTest, OnlyTRemembersAndUncheckingSavesNothingSoTheOldPositionStays) {
    SaveSettingText("Forms", "SmartForms", "t");
    SaveSettingNumber("Forms", "MDIVantrelLeft", 1200);
    StartFrame();
    EXPECT_FALSE(frame->mWRememberPositions->isChecked());
    CloseFrame();
    EXPECT_EQ(SettingsStore().allKeys().size(), 2) << "nothing saved at exit";
    Remembered({{"MDIVantrelWinState", 0}, {"MDIVantrelLeft", 1200}, {"MDIVantrelTop", 600},
                {"MDIVantrelWidth", 9600}, {"MDIVantrelHeight", 7200}});
    StartFrame();
    ASSERT_TRUE(frame->mWRememberPositions->isChecked());
    EXPECT_EQ(frame->pos(), QPoint(100, 50));
    EXPECT_EQ(frame->size(), QSize(800, 600));
    frame->mWRememberPositions->trigger();
    EXPECT_FALSE(SmartForms);
    frame->move(300, 300);
    CloseFrame();
    EXPECT_EQ(GetSettingText("Forms", "SmartForms"), "T");
    EXPECT_EQ(GetSettingNumber("Forms", "MDIVantrelLeft"), 1200);
}

TEST_F(SettingsTest, ACheckedItemSavesThePositionInTwipsWithinSixteenBitsAndTheNextStartRestoresIt) {
    StartFrame();
    frame->mWRememberPositions->trigger();
    EXPECT_TRUE(frame->mWRememberPositions->isChecked());
    frame->setGeometry(40, 50, 900, 700);
    QCoreApplication::processEvents();
    const QRect at(frame->pos(), frame->size());
    CloseFrame();
    EXPECT_EQ(GetSettingText("Forms", "SmartForms"), "T");
    const std::pair<const char*, int> saved[] = {{"MDIVantrelWinState", 0},
                                                 {"MDIVantrelLeft", PixelsToTwips(at.x())},
                                                 {"MDIVantrelTop", PixelsToTwips(at.y())},
                                                 {"MDIVantrelWidth", PixelsToTwips(at.width())},
                                                 {"MDIVantrelHeight", PixelsToTwips(at.height())}};
    for (const auto& [key, value] : saved) EXPECT_EQ(GetSettingNumber("Forms", key), value) << key;
    SmartForms = false;
    StartFrame();
    EXPECT_TRUE(frame->mWRememberPositions->isChecked());
    EXPECT_EQ(QRect(frame->pos(), frame->size()), at);
    frame->setGeometry(10, 10, 3500, 700);
    CloseFrame();
    EXPECT_EQ(GetSettingNumber("Forms", "MDIVantrelWidth"), 32767);
    EXPECT_EQ(DefaultFrameGeometry(QRect(0, 0, 3840, 2160), QSize(1000, 750)).width(), TwipsToPixels(32767));
}

TEST_F(SettingsTest, AFrameClosedMinimizedOrMaximizedComesBackSo) {
    Remembered({{"MDIVantrelWinState", 1}});
    StartFrame();
    EXPECT_TRUE(frame->isMinimized());
    EXPECT_FALSE(forms::OuterWindow(&forms::Comments())->isVisible()) << "the placing at the start did nothing";
    EXPECT_EQ(forms::Board().Board(), std::string(chess::kInitialLayout)) << "Reset still ran";
    frame->showNormal();
    EXPECT_TRUE(forms::OuterWindow(&forms::Board())->isVisible()) << "a restore places the board";
    CloseFrame();
    Remembered({{"MDIVantrelWinState", 2}, {"MDIVantrelLeft", 99999}});
    StartFrame();
    EXPECT_TRUE(frame->isMaximized());
    CloseFrame();
    EXPECT_EQ(GetSettingNumber("Forms", "MDIVantrelWinState"), 2);
    EXPECT_NE(GetSettingNumber("Forms", "MDIVantrelWidth"), 0) << "all five are saved whatever the state";
}
