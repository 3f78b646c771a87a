// The forms as windows of this process, over a program on the in-memory computer, in the delivered languages.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>

#include "tests/native/screens/ScreensTest.h"

#include "app/modSysParameter.h"

#include "forms/ControlIds.h"
#include "forms/Placement.h"
#include "forms/frmDirectorySelect.h"
#include "forms/frmMain.h"
#include "forms/frmMenu.h"
#include "forms/frmResult.h"
#include "forms/frmStartUp.h"
#include "forms/frmTarm.h"
#include "forms/frmTransaction.h"
#include "platform/windows/MessageLoop.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "screens/AgreementScreen.h"
#include "tests/windows/TextFit.h"

namespace mip {
namespace {

constexpr UINT DpiChanged = 0x02E0;

class FormsTest : public ScreensTest {
  protected:
    /// Gives the program the texts that are delivered in a language.
    void UseLanguage(const std::wstring& code) {
        program_.Identity.LanguageCode = code;
        for (const std::wstring& file : {L"\\M" + code + L".ini", L"\\Licence_" + code + L".txt"}) {
            std::ifstream delivered(std::filesystem::path(MIP_DISC_FOLDER "/SysDir") / file.substr(1),
                                    std::ios::binary);
            windows_.Tree.PutFile(program_.Paths.SysDirPath + file, {std::istreambuf_iterator<char>(delivered), {}});
        }
    }

    void FillDisc() {
        for (const auto state : {InstallState::New, InstallState::Update, InstallState::Update, InstallState::New}) {
            DiscCatalogueRecord& manual = AddManual(L"K1210MM");
            manual.Model_desc = L"Talis 2.0 Hybrid";
            manual.Year = L"2019";
            manual.Kubun = L"配線図集";
            manual.Lang = L"EN";
            manual.Version = L"12";
            manual.InstallState = state;
        }
    }

    template <typename FormType, typename... Arguments>
    std::unique_ptr<FormType> Open(Arguments&&... arguments) {
        auto form = std::make_unique<FormType>(host_, std::forward<Arguments>(arguments)...);
        form->Show();
        return form;
    }
    std::unique_ptr<frmDirectorySelect> OpenFolderQuestion() {
        return Open<frmDirectorySelect>(program_.DiscCatalogue.Records.back(),
                                        L"C:\\Vantor Manuals\\A folder\\far down\\with a very long name\\below it");
    }

    static void Press(const Form& form, int button) { SendMessageW(GetDlgItem(form.Window(), button), BM_CLICK, 0, 0); }
    static bool IsShown(const Form& form, int control) {
        return IsWindowVisible(GetDlgItem(form.Window(), control)) != 0;
    }

    /// The texts fit at the screen's own resolution and after a change to one and a half times of it.
    static void ExpectTextsFit(const Form& form) {
        EXPECT_NE(GetWindowTextLengthW(form.Window()), 0) << "the caption";
        for (const int id : {ids::lblTitle, ids::T_CONTRACT, ids::B_OK, ids::L_TarmMsg, ids::L_TransactionMsg}) {
            const HWND control = GetDlgItem(form.Window(), id);
            EXPECT_TRUE(control == nullptr || GetWindowTextLengthW(control) > 0) << id;
        }
        EXPECT_EQ(TextsThatDoNotFit(form.Window()), std::vector<std::string>{});
        RECT place{};
        GetWindowRect(form.Window(), &place);
        const int width = place.right - place.left;
        SendMessageW(form.Window(), DpiChanged, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
        EXPECT_EQ(TextsThatDoNotFit(form.Window()), std::vector<std::string>{}) << "at 150 per cent";
        GetWindowRect(form.Window(), &place);
        EXPECT_GT(place.right - place.left, width * 5 / 4);
    }

    /// Types the keys and says what came of it: an exit, a screen, a document, a question or a choice.
    std::string EffectOf(const Form& form, const std::vector<int>& keys) {
        const auto type = [&](int key) {
            const UINT message = key < 0x100 ? WM_KEYDOWN : key < 0x200 ? WM_CHAR : WM_CLOSE;
            PostMessageW(message == WM_CLOSE ? form.Window() : GetFocus(), message, static_cast<WPARAM>(key & 0xFF), 1);
            PostMessageW(GetFocus(), WM_KEYUP, static_cast<WPARAM>(key & 0xFF), 1);
            RunPending();
        };
        if (const auto exit = ExitCodeOf([&] { std::ranges::for_each(keys, type); })) {
            return "exit " + std::to_string(*exit);
        }
        if (!screens_.Shown.empty() || !windows_.Shell.Opened.empty()) {
            return screens_.Shown.empty() ? ToUtf8(windows_.Shell.Opened.back().Document) : screens_.Shown.back();
        }
        const int chosen = IsDlgButtonChecked(form.Window(), ids::O_Value + 1) == BST_CHECKED   ? 1
                           : IsDlgButtonChecked(form.Window(), ids::O_Value + 2) == BST_CHECKED ? 2
                                                                                                : 0;
        return chosen != 0 ? "chosen " + std::to_string(chosen) : windows_.MessageBoxes.Shown.empty() ? "" : "asked";
    }

    /// The colour of a step's frame, at the left of its caption.
    static COLORREF FrameColour(const Form& form, int caption) {
        POINT place{};
        MapWindowPoints(GetDlgItem(form.Window(), caption), form.Window(), &place, 1);
        RedrawWindow(form.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        return GetPixel(WindowDc(form.Window()).Get(), place.x - 69, place.y);
    }

    /// Serves the messages that wait. Throws what a form's handler threw.
    void RunPending() {
        ServeWaitingMessages();
        host_.ThrowKept();
    }

    RecordedScreens screens_{program_};
    FormHost host_{program_, screens_, EndProgram};
};

class FormTexts : public FormsTest, public testing::WithParamInterface<const wchar_t*> {
  protected:
    FormTexts() {
        UseLanguage(GetParam());
        FillDisc();
        KeepMessageTexts(program_);
        program_.KeptTexts.Agreement = LoadAgreementText(program_);
        windows_.Tree.Erase(L"D:\\programs");
    }
};

TEST_P(FormTexts, FitInEveryForm) {
    windows_.Tree.PutFile(L"C:\\Vantor\\Manager.exe");
    program_.Settings.ShortcutIconFlag = 1;
    ExpectTextsFit(*Open<frmMenu>());
    ExpectTextsFit(*Open<frmStartUp>());
    ExpectTextsFit(*Open<frmTarm>());
    ExpectTextsFit(*Open<frmTransaction>());
    ExpectTextsFit(*OpenFolderQuestion());
    ExpectTextsFit(*Open<frmMain>());
    ExpectTextsFit(*Open<frmResult>());
    program_.Outcome.ResultMessage = GetMessageText(program_, 71);
    program_.Outcome.ResultSubMessage = GetMessageText(program_, 24);
    program_.DiscCatalogue.Records.back().DoneFlag = true;
    const auto failed = Open<frmResult>();
    EXPECT_TRUE(IsShown(*failed, ids::L_Legend));
    ExpectTextsFit(*failed);
}

TEST_P(FormTexts, FitDuringAWholeInstallation) {
    const auto form = std::make_unique<frmMain>(host_);
    int looks = 0;
    std::vector<COLORREF> colours;
    std::set<LRESULT> mayEnd;
    windows_.Tree.PutFile(program_.Paths.RmDirBatPath);
    windows_.Tree.PutFile(program_.Paths.UnZipTempPath + L"\\rest.html");
    program_.Settings.Kvx3NewMdbName = L"new.mdb";
    windows_.PutCatalogue(L"D:\\programs\\setup\\new.mdb", 1);
    windows_.Tree.PutFile(L"C:\\Vantor\\Manager.exe");
    windows_.Tree.PutFile(L"D:\\programs\\man_manager\\Manager.exe");
    windows_.Tree.PutFile(L"D:\\programs\\man_manager\\setup.exe");
    windows_.Clock.OnYield = [&] {
        if (form->Window() != nullptr && looks < 50) {
            ++looks;
            EXPECT_EQ(TextsThatDoNotFit(form->Window()), std::vector<std::string>{});
            mayEnd.insert(SendMessageW(form->Window(), WM_QUERYENDSESSION, 0, 0));
            colours.push_back(FrameColour(*form, ids::L_STEP + 4));
        }
    };
    form->Show();
    RunPending();
    EXPECT_EQ(mayEnd, (std::set<LRESULT>{FALSE, TRUE})) << "the session, only while nothing is written";
    colours.erase(std::unique(colours.begin(), colours.end()), colours.end());
    EXPECT_EQ(colours, (std::vector<COLORREF>{0xFF0000, 0x0000FF, 0x404040})) << "of the last step";
}

std::string LanguageName(const testing::TestParamInfo<const wchar_t*>& language) {
    return ToUtf8(language.param);
}

INSTANTIATE_TEST_SUITE_P(Languages, FormTexts,
                         testing::Values(L"04S", L"04T", L"07", L"09", L"0A", L"0C", L"10", L"11", L"12"),
                         LanguageName);

TEST_F(FormsTest, TextsOfTwiceTheLengthAreBrokenIntoLines) {
    UseLanguage(L"07");
    FillDisc();
    KeepMessageTexts(program_);
    program_.KeptTexts.Agreement = LoadAgreementText(program_);
    windows_.Tree.Erase(L"D:\\programs");
    for (auto& [key, text] : program_.KeptTexts.Messages) {
        text += L" " + text;
    }
    ExpectTextsFit(*Open<frmMenu>());
    ExpectTextsFit(*Open<frmStartUp>());
    ExpectTextsFit(*Open<frmTarm>());
    ExpectTextsFit(*OpenFolderQuestion());
}

RECT RectOf(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

std::function<void(HWND)> onDialog;

void CALLBACK LookForDialog(HWND form, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = GetLastActivePopup(form);
    if (dialog != form && IsWindowVisible(dialog) != 0) {
        KillTimer(form, timer);
        onDialog(dialog);
    }
}

/// What the user does with the dialog that is about to open over a form.
void AnswerDialogOver(const Form& form, std::function<void(HWND)> answer) {
    onDialog = std::move(answer);
    SetTimer(form.Window(), 99, 50, LookForDialog);
}

TEST_F(FormsTest, AScreenOpensWhereTheLastOneStoodAndAQuestionOverItsOwner) {
    FillDisc();
    RECT place = RectOf(Open<frmTarm>()->Window());
    const RECT work = WorkAreaOf(GetDesktopWindow());
    EXPECT_NEAR(place.left - work.left, work.right - place.right, 1) << "the first one in the middle";
    for (const bool minimised : {false, true}) {
        SCOPED_TRACE(minimised);
        const auto last = Open<frmMenu>();
        SetWindowPos(last->Window(), nullptr, 400, 30, 0, 0, SWP_NOSIZE);
        const RECT shown = minimised ? work : RectOf(last->Window());
        ShowWindow(last->Window(), minimised ? SW_MINIMIZE : SW_SHOW);
        place = RectOf(Open<frmStartUp>()->Window());
        EXPECT_TRUE(place.left == 400 && place.top == 30);
        AnswerDialogOver(*last, [&](HWND question) {
            const RECT asked = RectOf(question);
            EXPECT_NEAR(asked.left + asked.right, shown.left + shown.right, 2);
            SetForegroundWindow(GetDesktopWindow());
            WindowsComputer(L"Second start").ShowPreviousInstance();
            EXPECT_EQ(GetForegroundWindow(), question);
            EXPECT_FALSE(IsIconic(last->Window()));
            SendMessageW(question, WM_CLOSE, 0, 0);
        });
        frmDirectorySelect(host_, program_.DiscCatalogue.Records.back(), L"C:\\Manuals").RunModal(last->Window());
    }
    for (const LONG out : {-5000L, 5000L}) {
        SetWindowPos(Open<frmTarm>()->Window(), nullptr, out, out, 0, 0, SWP_NOSIZE);
        place = RectOf(Open<frmMenu>()->Window());
        EXPECT_TRUE(out < 0 ? place.left == work.left && place.top == work.top
                            : place.right == work.right && place.bottom == work.bottom);
    }
}

TEST_F(FormsTest, TheMenuWaitsForTheBrowserUntilItsUserStopsThat) {
    windows_.Tree.PutFile(L"D:\\index.html");
    windows_.Browsers.NewBrowser.ReadyPolls = 1000;
    const auto form = Open<frmMenu>();
    RunPending();
    windows_.Clock.OnYield = [&] {
        EXPECT_TRUE(IsShown(*form, ids::L_Notice));
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(form->Window(), ids::cmdStartInstall)));
        PostMessageW(GetFocus(), WM_KEYDOWN, windows_.Clock.Yields == 3 ? VK_ESCAPE : VK_SPACE, 1);
        ServeWaitingMessages();
    };
    Press(*form, ids::cmdBrowseManual);
    EXPECT_EQ(windows_.Clock.Yields, 3);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ids::cmdBrowseManual);
    EXPECT_FALSE(IsShown(*form, ids::L_Notice));
}

bool isHighContrastOn = false;

/// Wine knows no high contrast; nothing else is asked.
BOOL WINAPI AnswerForHighContrast(UINT action, UINT, PVOID data, UINT) {
    static_cast<HIGHCONTRASTW*>(data)->dwFlags = isHighContrastOn ? HCF_HIGHCONTRASTON : 0;
    return action == SPI_GETHIGHCONTRAST;
}

TEST_F(FormsTest, HighContrastTakesTheUsersColoursAndOutlinesTheSteps) {
    const INT parts[] = {COLOR_WINDOW, COLOR_WINDOWTEXT};
    const COLORREF before[] = {GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT)};
    for (const bool white : {false, true}) {
        const COLORREF page = white ? 0xFFFFFF : 0;
        const COLORREF text = 0xFFFFFF - page;
        const COLORREF colours[] = {page, text};
        SetSysColors(2, parts, colours);
        isHighContrastOn = true;
        const auto form = Open<frmMain>();
        RedrawWindow(form->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const WindowDc dc(form->Window());
        POINT frame{-69, 0};
        MapWindowPoints(GetDlgItem(form->Window(), ids::L_STEP + 2), form->Window(), &frame, 1);
        EXPECT_EQ(GetPixel(dc.Get(), 1, 1), page);
        EXPECT_EQ(GetPixel(dc.Get(), frame.x, frame.y), COLORREF{0xFF0000});
        EXPECT_EQ(GetPixel(dc.Get(), frame.x - 3, frame.y), text);
        SetSysColors(2, parts, before);
        isHighContrastOn = false;
    }
}

TEST_F(FormsTest, ABoxInTheBackgroundLiesOverItsScreen) {
    const auto form = Open<frmMenu>();
    SetForegroundWindow(GetDesktopWindow());
    ASSERT_EQ(GetActiveWindow(), nullptr);
    AnswerDialogOver(*form, [](HWND box) { PostMessageW(box, WM_COMMAND, IDOK, 0); });
    WindowsMessageBoxes().Show(L"text", boxes::Ok, L"title");
}

constexpr int TitleBar = 0x200;  ///< its closing button, in a list of keys
/// A character, in a list of virtual keys.
constexpr int Typed(char letter) {
    return 0x100 + letter;
}

TEST_F(FormsTest, EveryScreenIsUsedByKeyboardAlone) {
    UseLanguage(L"09");
    FillDisc();
    windows_.Tree.PutFile(L"D:\\index.html");
    windows_.Browsers.CanStart = false;
    using Opener = std::function<std::unique_ptr<Form>()>;
    const Opener menu = [this] { return Open<frmMenu>(); };
    const Opener agreement = [this] { return Open<frmStartUp>(); };
    const Opener folder = [this] { return OpenFolderQuestion(); };
    const Opener result = [this] { return Open<frmResult>(); };
    const Opener closing = [this] { return Open<frmTarm>(); };
    const int agree = ids::O_Value + 1;
    const int refuse = ids::O_Value + 2;
    const struct {
        const char* Label;
        const Opener& Screen;
        std::vector<int> Keys;
        int Focus;  ///< nothing when the screen is gone
        std::string Effect;
    } cases[] = {
        {"the menu's start", menu, {}, ids::cmdStartInstall, ""},
        {"the menu's order", menu, {VK_TAB, VK_TAB}, ids::cmdDispManual, ""},
        {"the menu's default", menu, {VK_RETURN}, 0, "agreement"},
        {"the guide", menu, {VK_TAB, VK_TAB, VK_SPACE}, ids::cmdDispManual, "D:\\\\install.html"},
        {"the browser", menu, {VK_TAB, VK_RETURN}, ids::cmdBrowseManual, "D:\\index.html"},
        {"leaving the menu", menu, {VK_ESCAPE}, 0, "exit 2"},
        {"reading first", agreement, {VK_RETURN}, ids::T_CONTRACT, ""},
        {"a letter while reading", agreement, {Typed('a'), Typed('d')}, ids::T_CONTRACT, ""},
        {"the arrow chooses", agreement, {VK_TAB, VK_DOWN}, refuse, "chosen 2"},
        {"the arrow goes round", agreement, {VK_TAB, VK_DOWN, VK_DOWN}, agree, "chosen 1"},
        {"the blank chooses", agreement, {VK_TAB, VK_SPACE}, agree, "chosen 1"},
        {"a letter at an option", agreement, {VK_TAB, Typed('d')}, refuse, "chosen 2"},
        {"agreeing", agreement, {VK_TAB, VK_SPACE, VK_RETURN}, 0, "installation"},
        {"refusing", agreement, {VK_TAB, VK_DOWN, VK_RETURN}, 0, "exit 2"},
        {"leaving the agreement", agreement, {VK_ESCAPE}, 0, "exit 2"},
        {"closing the menu", menu, {TitleBar}, 0, "exit 2"},
        {"closing the agreement", agreement, {TitleBar}, 0, "exit 2"},
        {"closing the result", result, {TitleBar}, 0, "exit 4"},
        {"the folder's order", folder, {VK_TAB, VK_TAB}, ids::B_CHANGE, ""},
        {"taking the folder", folder, {VK_RETURN}, 0, ""},
        {"leaving the folder", folder, {VK_ESCAPE}, 0, "asked"},
        {"leaving the result", result, {VK_RETURN}, 0, "exit 4"},
        {"the result's way out", result, {VK_ESCAPE}, 0, "exit 4"},
        {"the end", closing, {VK_RETURN}, 0, "exit 4"},
        {"the end's way out", closing, {VK_ESCAPE}, 0, "exit 4"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.Label);
        program_.Outcome = {};
        program_.Outcome.ExitCode = ExitCode::FailedPartWay;
        screens_.Shown.clear();
        windows_.Shell.Opened.clear();
        windows_.MessageBoxes.Shown.clear();
        const auto form = each.Screen();
        RunPending();
        const std::string effect = EffectOf(*form, each.Keys);
        EXPECT_EQ(effect, each.Effect);
        EXPECT_EQ(form->Window() == nullptr || effect.starts_with("exit") ? 0 : GetDlgCtrlID(GetFocus()), each.Focus);
    }
}

TEST_F(FormsTest, ChangeAsksTheShellFromTheShownFolderOn) {
    const auto form = Open<frmDirectorySelect>(AddManual(L"K1210MM"), L"c:\\WINDOWS\\system32");
    AnswerDialogOver(*form, [](HWND browser) {
        EXPECT_EQ(TextOf(FindWindowExW(browser, nullptr, L"Static", nullptr)), L"message 21");
        PostMessageW(browser, WM_COMMAND, IDOK, 0);
    });
    Press(*form, ids::B_CHANGE);
    EXPECT_EQ(TextOf(GetDlgItem(form->Window(), ids::L_InstalPath)), L"C:\\windows\\system32") << "as it is written";
}

TEST_F(FormsTest, AFolderTooLongForItsLinesIsShownWholeToTheMouse) {
    for (const std::size_t length : {20U, 300U}) {
        const auto form = Open<frmDirectorySelect>(AddManual(L"K1210MM"), L"C:\\" + std::wstring(length, L'm'));
        const HWND folder = GetDlgItem(form->Window(), ids::L_InstalPath);
        NMTTDISPINFOW tip{};
        tip.hdr = {nullptr, reinterpret_cast<UINT_PTR>(folder), static_cast<UINT>(TTN_GETDISPINFOW)};
        SendMessageW(form->Window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&tip));
        EXPECT_EQ(std::wstring(tip.lpszText), length > 100 ? TextOf(folder) : L"");
    }
}

TEST_F(FormsTest, TheFolderQuestionStaysUntilItIsAnswered) {
    FillDisc();
    windows_.Tree.DriveOf(L"C:\\")->FreeBytes = 1;
    windows_.MessageBoxes.Answers = {boxes::AnswerOk, boxes::AnswerNo, boxes::AnswerYes};
    const auto form = OpenFolderQuestion();
    for (const int button : {ids::B_OK, ids::B_Cancel}) {
        Press(*form, button);
        EXPECT_NE(form->Window(), nullptr) << "no room, or not cancelled after all";
    }
    EXPECT_EQ(windows_.MessageBoxes.Shown.size(), 2U);
    SendMessageW(form->Window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(form->Window(), nullptr);
    EXPECT_EQ(program_.Outcome.ResultMessage, L"message 25");
}

TEST_F(FormsTest, TheResultScreenListsManualsAndMakesTheShortcutOnlyWhenAsked) {
    FillDisc();
    UseLanguage(L"09");
    windows_.Tree.PutFile(L"C:\\Vantor\\Manager.exe");
    windows_.Tree.PutFolder(L"C:\\Desktop");
    windows_.Shell.SpecialFolders[25] = L"C:\\Desktop";
    program_.Settings.ShortcutIconFlag = 1;
    program_.Outcome.ManualsRecorded = 1;
    for (const bool ticked : {false, true}) {
        const auto form = Open<frmResult>();
        EXPECT_FALSE(IsShown(*form, ids::L_NormalMsg));
        EXPECT_TRUE(IsShown(*form, ids::vaSpread));
        PostMessageW(GetDlgItem(form->Window(), ids::vaSpread), WM_CHAR, L'm', 1);
        RunPending();
        EXPECT_FALSE(IsDlgButtonChecked(form->Window(), ids::C_Shortcut)) << "by a letter typed in the list";
        if (ticked) {
            Press(*form, ids::C_Shortcut);
        }
        Press(*form, ids::B_OK);
        EXPECT_EQ(windows_.Shell.Shortcuts.size(), ticked ? 1U : 0U);
        EXPECT_EQ(screens_.Shown.back(), "menu");
        EXPECT_EQ(form->Window(), nullptr);
    }
}

TEST_F(FormsTest, TheResultScreenGivesItsListTheRoomAndIsNeverSmallerThanAtFirst) {
    FillDisc();
    const auto form = Open<frmResult>();
    const auto resized = [&](int width, int height) {
        SetWindowPos(form->Window(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_EQ(TextsThatDoNotFit(form->Window()), std::vector<std::string>{});
        RECT list{};
        GetWindowRect(GetDlgItem(form->Window(), ids::vaSpread), &list);
        return std::pair(list.right - list.left, list.bottom - list.top);
    };
    RECT place{};
    GetWindowRect(form->Window(), &place);
    const auto [width, height] = resized(0, 0);
    EXPECT_EQ(resized(place.right - place.left + 99, place.bottom - place.top + 77),
              std::pair(width + 99, height + 77));
    EXPECT_EQ(resized(0, 0), std::pair(width, height));
}

std::wstring ClipboardText(HWND reader) {
    std::wstring text;
    if (OpenClipboard(reader) != 0) {
        if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
            text = static_cast<const wchar_t*>(GlobalLock(data));
            GlobalUnlock(data);
        }
        CloseClipboard();
    }
    return text;
}

TEST_F(FormsTest, CtrlCCopiesTheResultWhereverTheFocusIsOrTheChosenRows) {
    FillDisc();
    const auto form = Open<frmResult>();
    const auto type = [&](int control, WPARAM letter, BYTE ctrl = 0x80) {
        BYTE keys[256]{};
        for (const BYTE state : {ctrl, BYTE{0}}) {
            keys[VK_CONTROL] = state;
            SetKeyboardState(keys);
            SendMessageW(GetDlgItem(form->Window(), control), WM_KEYDOWN, std::exchange(letter, VK_CONTROL), 1);
        }
        return ClipboardText(form->Window());
    };
    for (const int control : {ids::B_OK, ids::vaSpread}) {
        program_.Outcome.ResultMessage = std::to_wstring(control);
        EXPECT_FALSE(type(control, 'C', 0).starts_with(program_.Outcome.ResultMessage)) << "only typed";
        EXPECT_TRUE(type(control, 'C').starts_with(program_.Outcome.ResultMessage));
    }
    const std::wstring all = ClipboardText(form->Window());
    type(ids::vaSpread, 'A');
    const std::wstring rows = type(ids::vaSpread, 'C');
    EXPECT_EQ(rows.find(L"Talis 2.0 Hybrid\t2019\tEN\tK1210MM\t12\tmessage 52\r\n"), 0U);
    EXPECT_EQ(std::ranges::count(rows, L'\n'), 4);
    EXPECT_NE(all.find(rows), std::wstring::npos);
}

TEST_F(FormsTest, TheResultScreenIsFinishedOnceHoweverOftenItIsClosed) {
    windows_.Tree.PutFile(program_.Paths.UnZipTempPath + L"\\rest.html");
    program_.Outcome.ManualsRecorded = 1;
    const auto form = Open<frmResult>();
    int closings = 0;
    windows_.Clock.OnYield = [&] {
        if (closings < 3) {
            ++closings;
            EXPECT_EQ(SendMessageW(form->Window(), WM_SETCURSOR, 0, 0), TRUE) << "the hourglass";
            SendMessageW(form->Window(), WM_CLOSE, 0, 0);
        }
    };
    Press(*form, ids::B_OK);
    EXPECT_GT(closings, 0);
    EXPECT_EQ(screens_.Shown, std::vector<std::string>{"menu"});
    EXPECT_EQ(windows_.Processes.StartedHidden.size(), 1U);
}

TEST_F(FormsTest, TheProgressScreenRunsTheInstallationOnceAndCannotBeClosed) {
    const auto form = Open<frmMain>();
    EXPECT_NE(GetMenuState(GetSystemMenu(form->Window(), FALSE), SC_CLOSE, MF_BYCOMMAND) & MF_GRAYED, 0U);
    SendMessageW(form->Window(), WM_CLOSE, 0, 0);
    SendMessageW(form->Window(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_NE(form->Window(), nullptr);
    for (int bar = 0; bar < 3; ++bar) {
        EXPECT_FALSE(IsShown(*form, ids::pgBar + bar));
    }
    RunPending();
    EXPECT_EQ(form->Window(), nullptr);
    EXPECT_TRUE(program_.Outcome.RunFinished);
    EXPECT_EQ(screens_.Shown, std::vector<std::string>{"result"});
}

}  // namespace

/// In place of the import of that name.
extern "C" decltype(&AnswerForHighContrast) importedSystemParametersInfo asm("__imp__SystemParametersInfoW@16");
decltype(&AnswerForHighContrast) importedSystemParametersInfo = AnswerForHighContrast;

}  // namespace mip
