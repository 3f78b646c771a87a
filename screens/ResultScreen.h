#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "screens/GridModel.h"
#include "screens/clsSpread.h"
#include "text/DateTime.h"

namespace mip {

struct DiscCatalogue;
struct DiscCatalogueRecord;
struct Installation;
struct Outcome;
struct Program;
enum class InstallState;

/// What the result screen says above the list, in the colours of success or failure.
struct OutcomeTexts {
    bool Succeeded = false;
    std::wstring Message;
    std::wstring SubMessage;

    bool operator==(const OutcomeTexts&) const = default;
};
OutcomeTexts GetOutcomeTexts(const Program& program);

/// The order in which the disc's manuals are listed: by model order, year, classification and place on the disc.
std::vector<std::int16_t> BuildSortOrder(const DiscCatalogue& catalogue);
/// Brings the disc catalogue into that order.
void SortDiscCatalogue(DiscCatalogue& catalogue, const std::vector<std::int16_t>& order);

/// The texts of a manual's install state.
class StatusTexts {
  public:
    explicit StatusTexts(const Program& program);

    /// The text of a state; `previous` for None.
    const std::wstring& Of(InstallState state, const std::wstring& previous) const;
    /// The text for a recorded installation date: new, updated, or from an earlier run.
    const std::wstring& StatusTextForDate(const Installation& run, DateTime date) const;

  private:
    std::wstring new_;
    std::wstring updated_;
    std::wstring unchanged_;
    std::wstring notImported_;
};

/// The list of the manuals that the disc brings, in a grid with six columns.
class ResultList {
  public:
    ResultList(Program& program, SpreadForm& form, SpreadGrid& grid);

    /// Titles, sorts and fills the grid. False when the catalogue could not be read.
    [[nodiscard]] bool Load();

  private:
    void SetGridHeaders();
    bool FillGrid();
    void AddRow(std::int32_t row, const DiscCatalogueRecord& manual, const std::wstring& status);

    Program& program_;
    SpreadForm& form_;
    clsSpread spread_;
    std::int16_t grid_;
};

/// True for a manual that this run installed although the run as a whole failed; such rows are coloured and say so.
bool IsInstalledInFailedRun(const Outcome& outcome, const DiscCatalogueRecord& manual);

/// What the user can pass on to somebody who helps: the outcome, the list, and the log's lines.
std::wstring TextToCopy(const Program& program, const GridModel& list);

/// True when the result screen offers a shortcut to the manager program on the desktop.
bool MayOfferDesktopShortcut(const Program& program);
void MakeDesktopShortcut(const Program& program);

/// Nothing changed on the computer: neither did the manager program's setup run nor was a manual recorded.
bool NothingWasInstalled(const Outcome& outcome);
/// After a run that installed something: removes the temporary extraction folder and opens the manuals' folders to all
/// users, serving messages between them. Failures do not stop the program.
void FinishRun(Program& program);

}  // namespace mip
