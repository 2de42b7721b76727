// The opcode catalogue: the first byte of every command the library sends.
#pragma once

#include <cstdint>

namespace kalvor {

enum class Opcode : uint8_t {
  Picture = 0x00,               // picture upload, 5 + 11 x points
  TrackUpload = 0x01,           // displayupdate; answer into the preview buffer
  PointRate = 0x02,             // displayfreq, displaypointrate
  PictureQuery = 0x04,          // answer into the picture reply area
  Palette = 0x05,               // 386-byte palette command
  RefreshPreview = 0x06,        // answer into the preview buffer
  Morph = 0x07,
  Camera = 0x09,                // 36-byte answer
  BeamParking = 0x0D,
  WorldSetShiftSize = 0x0E,
  WriteLpt = 0x11,
  WorldGetShiftSize = 0x14,     // answer written over the command
  PicturesPerSecond = 0x15,
  VisualTrackUpload = 0x16,     // displayvisualupdate
  DynamicIntensity = 0x17,
  ColourScale = 0x18,
  Skew = 0x1A,
  ResetPalette = 0x1B,          // displayreset, palette layout
  ToStartPoint = 0x1C,
  GlobalShiftSize = 0x1D,
  Camera2 = 0x1E,               // 36-byte answer
  Equalize = 0x1F,
  Sparkle = 0x20,               // ' '
  ClearPictures = 0x21,         // '!'
  Version = 0x22,               // '"', 4-byte answer
  SoftwareUpdate = 0x23,        // '#'
  Signal = 0x24,                // '$'
  ScanParameters = 0x25,        // '%'
  EnableWait = 0x26,            // '&'
  WorldGeonet = 0x27,           // '\''
  Shutter = 0x28,               // '('
  Geonet = 0x29,                // ')'
  CopyFile = 0x2A,              // '*', header; data blocks follow without opcode
  PictureTotal = 0x2B,          // '+', 4-byte answer
  Ugc = 0x2C,                   // ','
  SetDmx = 0x2D,                // '-'
  GetDmx = 0x2E,                // '.', 1-byte answer
  RasterFrame = 0x2F,           // '/', answer into the preview buffer
  UpdateDmx = 0x30,             // '0'
  EnableDmxIn = 0x31,           // '1'
  GlobalParameters = 0x32,      // '2'
  DirectPoints = 0x33,          // '3', answer into the preview buffer
  TrueColour = 0x34,            // '4'
  SetMaxScanner = 0x35,         // '5'
  CreateForm = 0x63,            // 'c', ZRKErzeugeFormular
  EnableIldaOutput = 0x64,      // 'd'
  DisableIldaOutput = 0x65,     // 'e'
  ShowHwManager = 0x66,         // 'f', also Display_Invert_Y
  HideHwManager = 0x67,         // 'g'
  ShowHelp = 0x6E,              // 'n'
  CheckForUpdate = 0x6F,        // 'o'
  SoftwareCrc = 0x70,           // 'p', 4-byte answer
  Routing = 0x71,               // 'q', 1-byte answer
  InvertX = 0x72,               // 'r', 1-byte answer
  InvertY = 0x73,               // 's', 1-byte answer
  SwapXY = 0x74,                // 't', 1-byte answer
  InterpolatedPointCount = 0x75,// 'u', 2-byte answer
  ExportIldaName = 0x76,        // 'v'
  StartHwManager = 0x77,        // 'w'
  HwManagerStatus = 0x78,       // 'x', 1-byte answer
  EnableIldaOutputOnce = 0x79,  // 'y'
  RefreshFullPreview = 0x7B,    // '{', answer into the full preview buffer
  DeviceSettings = 0x7C,        // '|', 23-byte answer
  Vistrel = 0x7D,               // '}'
  RefreshVistrel = 0x7E,        // '~', answer into the Vistrel buffer
  EndSession = 0xFF,
};

constexpr uint8_t op(Opcode o) { return static_cast<uint8_t>(o); }

}  // namespace kalvor
