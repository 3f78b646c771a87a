#pragma once

/// The numbers of the forms' controls.
namespace mip::ids {

inline constexpr int B_OK = 1;      ///< also B_END; the number that Enter stands for in a dialog
inline constexpr int B_Cancel = 2;  ///< the number that Esc stands for in a dialog

inline constexpr int lblTitle = 100;
inline constexpr int cmdDispManual = 101;
inline constexpr int cmdStartInstall = 102;
inline constexpr int cmdBrowseManual = 103;
inline constexpr int L_Notice = 104;

inline constexpr int T_CONTRACT = 200;
inline constexpr int O_Value = 200;  ///< options 1 and 2 follow

inline constexpr int L_STEP = 300;  ///< steps 2, 3 and 4 follow
inline constexpr int L_Manual = 310;
inline constexpr int L_Position = 311;
inline constexpr int pgBar = 320;  ///< the bars 0, 1 and 2 of enum Bar

inline constexpr int L_Name = 400;
inline constexpr int L_Msg = 410;  ///< lines 0, 1 and 2
inline constexpr int Frame1 = 420;
inline constexpr int L_InstalPath = 421;
inline constexpr int B_CHANGE = 422;

inline constexpr int L_NormalMsg = 500;
inline constexpr int L_ErrorMsg = 500;  ///< lines 1 and 2 follow
inline constexpr int vaSpread = 510;
inline constexpr int C_Shortcut = 511;
inline constexpr int L_Legend = 512;
inline constexpr int L_List = 513;

inline constexpr int L_TarmMsg = 600;

inline constexpr int L_TransactionMsg = 700;
inline constexpr int Label1 = 701;

}  // namespace mip::ids
