#pragma once

#include <string>
#include <vector>

#include "app/InstalledRecord.h"

namespace mip {

/// A string literal of a statement: quoted, every apostrophe doubled.
std::wstring QuoteSql(const std::wstring& value);

}  // namespace mip

/// The text of every statement that the program sends to the catalogue database.
namespace mip::statements {

inline constexpr wchar_t ReadAllInstalled[] = L"SELECT * FROM M_manage";
inline constexpr wchar_t ReadSystem[] = L"SELECT * FROM M_system";
inline constexpr wchar_t ReadModelOrder[] = L"SELECT * FROM M_order";
inline constexpr wchar_t ReadForms[] = L"SELECT PUB_NO,PDF_FLG FROM M_type";
inline constexpr wchar_t ReadLastInstallPath[] = L"SELECT INSPath FROM M_manage ORDER BY INSDate DESC";

std::wstring FindInstalled(const std::wstring& pubNo);
/// Those of several publications that are there, by their number; at least one.
std::wstring FindInstalledAmong(const std::vector<std::wstring>& pubNos);
/// M_manage with the PDF_FLG that M_type has for each row.
std::wstring InstalledList();

std::wstring DeleteInstalled(const std::wstring& pubNo);
std::wstring DeleteType(const std::wstring& pubNo);
std::wstring InsertInstalled(const InstalledRecord& record);
/// The row of a manual that has just been installed, and of one that another database held.
std::wstring InsertNewType(const std::wstring& pubNo, const std::wstring& pdfFlag);
std::wstring InsertCarriedType(const std::wstring& pubNo, const std::wstring& pdfFlag);

std::wstring MarkForAdjustment(const std::wstring& pubNo);
std::wstring ReregisterInstallPath(const std::wstring& pubNo, const std::wstring& path);

}  // namespace mip::statements
