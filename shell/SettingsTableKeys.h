#pragma once
#include "shell/SettingsTable.h"

namespace rm::keys {

// The keys the program reaches by name, each spelled once here; their rows in the settings
// table use the same constants. A constant is named as the key itself: it is the name users see
// in `rastermill settings list` and in the project file.

// The folder of each role of the explorer.
inline constexpr SettingKey BFP{"S", "BFP"};
inline constexpr SettingKey FontFP{"S4", "FontFP"};
inline constexpr SettingKey tfp1{"S5", "tfp1"};
inline constexpr SettingKey PFP{"S", "PFP"};
inline constexpr SettingKey OFP{"S", "OFP"};
inline constexpr SettingKey bfpa{"S16", "bfpa"};
// The extension of the pictures, and of the texts, a batch takes from a folder.
inline constexpr SettingKey mgex{"S16", "mgex"};
inline constexpr SettingKey mext{"S14", "mext"};

// What the configuration report shows.
inline constexpr SettingKey pprof{"S7", "pprof"};
inline constexpr SettingKey LCDSI{"B2", "LCDSI"};
inline constexpr SettingKey DELAY{"B2", "DELAY"};
inline constexpr SettingKey DElas{"B2", "DElas"};
inline constexpr SettingKey Ecli{"B2", "Ecli"};
inline constexpr SettingKey WSIZE{"B2", "WSIZE"};
inline constexpr SettingKey WORIG{"B2", "WORIG"};
inline constexpr SettingKey UMATB{"B2", "UMATB"};
inline constexpr SettingKey COMB{"SX", "COMB"};
inline constexpr SettingKey rs48{"B13", "rs48"};
inline constexpr SettingKey tfp8{"S5", "tfp8"};
inline constexpr SettingKey tfp9{"S5", "tfp9"};
inline constexpr SettingKey tfp14{"S5", "tfp14"};
inline constexpr SettingKey tfp11{"S5", "tfp11"};
inline constexpr SettingKey tfp10{"S5", "tfp10"};
inline constexpr SettingKey usco{"S12", "usco"};
inline constexpr SettingKey eofbl{"S13", "eofbl"};

// The settings panel's fields.
inline constexpr SettingKey INCSYN{"S3", "INCSYN"};
inline constexpr SettingKey INCSSYN{"S3", "INCSSYN"};
inline constexpr SettingKey INCESYN{"S3", "INCESYN"};
inline constexpr SettingKey FPREF{"S3", "FPREF"};
inline constexpr SettingKey FSUFF{"S3", "FSUFF"};
inline constexpr SettingKey LCDBS{"S3", "LCDBS"};
inline constexpr SettingKey ENDSYN{"S3", "ENDSYN"};
inline constexpr SettingKey SEPASY{"S3", "SEPASY"};
inline constexpr SettingKey DELSYN{"S3", "DELSYN"};
inline constexpr SettingKey DELSTA{"S3", "DELSTA"};
inline constexpr SettingKey DELEND{"S3", "DELEND"};
inline constexpr SettingKey LCOMPS{"S3", "LCOMPS"};
inline constexpr SettingKey lcdUncomp{"S4", "lcdUncomp"};
inline constexpr SettingKey LSTAS{"S3", "LSTAS"};
inline constexpr SettingKey LENDS{"S3", "LENDS"};
inline constexpr SettingKey CPRE{"S", "CPRE"};
inline constexpr SettingKey cpfr{"S13", "cpfr"};
inline constexpr SettingKey VALSUF{"S2", "VALSUF"};
inline constexpr SettingKey VALpref{"S2", "VALpref"};
inline constexpr SettingKey fpar11{"S12", "fpar11"};
inline constexpr SettingKey fpar12{"S12", "fpar12"};
inline constexpr SettingKey fpar13{"S12", "fpar13"};
inline constexpr SettingKey fpar14{"S12", "fpar14"};
inline constexpr SettingKey eolst{"S13", "eolst"};
inline constexpr SettingKey cstrt{"S13", "cstrt"};
inline constexpr SettingKey sepst{"S13", "sepst"};
inline constexpr SettingKey FXHB{"S", "FXHB"};
inline constexpr SettingKey WithSp{"B1", "WithSp"};
inline constexpr SettingKey ORGC{"I11", "ORGC"};
inline constexpr SettingKey dellas{"B1", "dellas"};
inline constexpr SettingKey delallas{"B1", "delallas"};
inline constexpr SettingKey Noonts{"B1", "Noonts"};
inline constexpr SettingKey Nodcom{"B1", "Nodcom"};
inline constexpr SettingKey Noh{"B1", "Noh"};
inline constexpr SettingKey Addof{"B1", "Addof"};
inline constexpr SettingKey LineN{"B1", "LineN"};
inline constexpr SettingKey begds{"S8", "begds"};
inline constexpr SettingKey Endst{"S8", "Endst"};
inline constexpr SettingKey ColRx{"B1", "ColRx"};
inline constexpr SettingKey cprx{"S14", "cprx"};
inline constexpr SettingKey CU8{"B17", "CU8"};
inline constexpr SettingKey dore{"B1", "dore"};
inline constexpr SettingKey rgb2{"B7", "rgb2"};
inline constexpr SettingKey RGBA{"S4", "RGBA"};
inline constexpr SettingKey snib{"B1", "snib"};

// The desktop's window places and whether each window is shown.
inline constexpr SettingKey formp1{"S7", "formp1"};
inline constexpr SettingKey formp2{"S7", "formp2"};
inline constexpr SettingKey formp3{"S7", "formp3"};
inline constexpr SettingKey formp4{"S7", "formp4"};
inline constexpr SettingKey formp5{"S7", "formp5"};
inline constexpr SettingKey formp6{"S7", "formp6"};
inline constexpr SettingKey formW3{"S7", "formW3"};
inline constexpr SettingKey formW4{"S7", "formW4"};
inline constexpr SettingKey ew1{"S13", "ew1"};
inline constexpr SettingKey ew2{"S13", "ew2"};
inline constexpr SettingKey et2{"S13", "et2"};
inline constexpr SettingKey etl2{"S13", "etl2"};
inline constexpr SettingKey eh2{"S13", "eh2"};
inline constexpr SettingKey eta2{"S13", "eta2"};
inline constexpr SettingKey ExploWs{"B1", "ExploWs"};
inline constexpr SettingKey Expws2{"B1", "Expws2"};
inline constexpr SettingKey ImageWs{"B1", "ImageWs"};
inline constexpr SettingKey PixelWs{"B1", "PixelWs"};
inline constexpr SettingKey Logws{"B1", "Logws"};
inline constexpr SettingKey ConfWs{"B1", "ConfWs"};
inline constexpr SettingKey MainWs{"B1", "MainWs"};

// The colour mode's switches, written from the mode in force, and the keys read with them.
inline constexpr SettingKey Monc{"S4", "Monc"};
inline constexpr SettingKey Moni{"S4", "Moni"};
inline constexpr SettingKey G4{"S4", "G4"};
inline constexpr SettingKey G42{"S4", "G42"};
inline constexpr SettingKey G16{"S4", "G16"};
inline constexpr SettingKey RGRA{"S4", "RGRA"};
inline constexpr SettingKey ST7{"B1", "ST7"};
inline constexpr SettingKey G32{"S4", "G32"};
inline constexpr SettingKey GRL32{"S4", "GRL32"};
inline constexpr SettingKey G256{"S4", "G256"};
inline constexpr SettingKey C8{"S4", "C8"};
inline constexpr SettingKey C16{"S4", "C16"};
inline constexpr SettingKey C256{"S4", "C256"};
inline constexpr SettingKey C256NP{"S4", "C256NP"};
inline constexpr SettingKey C4096{"S4", "C4096"};
inline constexpr SettingKey C65535{"S4", "C65535"};
inline constexpr SettingKey C18{"S4", "C18"};
inline constexpr SettingKey C18u{"S4", "C18u"};
inline constexpr SettingKey C16M{"S4", "C16M"};
inline constexpr SettingKey PM{"S4", "PM"};
inline constexpr SettingKey Neg{"B1", "Neg"};
inline constexpr SettingKey NOMAT{"B2", "NOMAT"};
inline constexpr SettingKey Hpixels{"I8", "Hpixels"};
inline constexpr SettingKey Wpixels{"I8", "Wpixels"};

}  // namespace rm::keys
