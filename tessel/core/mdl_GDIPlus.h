// The flat API as libgdiplus provides it, declared here and nowhere else. libgdiplus ships no
// headers; the declarations follow its ABI, which differs from the Windows one in places:
// WCHAR is UTF-16 (char16_t), the start-up token is 32 bits wide, BOOL is int.
//
// Only the toolkit's wrappers of native objects call these functions, every status passes through
// Execute, and nothing but a Handle (Handle.h) calls a function that frees a native object.
#pragma once

#include <tessel/core/Handle.h>
#include <tessel/core/enm_Draw_Status.h>

#include <cstdint>
#include <utility>
#include <vector>
#include <mutex>
#include <string>

namespace tessel::mdl_GDIPlus {

using GpStatus = enm_Draw_Status;
using ARGB = uint32_t;
using PixelFormat = int32_t;
using REAL = float;

// Opaque objects. A kind that the flat API treats as a special case of another derives from
// it, so that its pointer converts without a cast (a solid fill is a brush, a bitmap an image).
struct GpGraphics;
struct GpImage {};
struct GpBitmap : GpImage {};
struct GpBrush {};
struct GpSolidFill : GpBrush {};
struct GpLineGradient : GpBrush {};
struct GpTexture : GpBrush {};
struct GpPen;
struct GpFont;
struct GpFontFamily;
struct GpFontCollection;
struct GpStringFormat;
struct GpImageAttributes;
struct GpPath;
struct GpMatrix;
struct GpRegion;

struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
};

struct GdiplusStartupInput {
  uint32_t GdiplusVersion = 1;
  void* DebugEventCallback = nullptr;
  int SuppressBackgroundThread = 0;
  int SuppressExternalCodecs = 0;
};

struct ImageCodecInfo {
  GUID Clsid;
  GUID FormatID;
  const char16_t* CodecName;
  const char16_t* DllName;
  const char16_t* FormatDescription;
  const char16_t* FilenameExtension;
  const char16_t* MimeType;
  uint32_t Flags;
  uint32_t Version;
  uint32_t SigCount;
  uint32_t SigSize;
  const uint8_t* SigPattern;
  const uint8_t* SigMask;
};

// An encoder's options (GdipSaveImageToFile): ULONG is 32 bits wide in libgdiplus.
struct EncoderParameter {
  GUID Guid;
  uint32_t NumberOfValues;
  uint32_t Type;  // 4: 32-bit integers
  void* Value;
};
struct EncoderParameters {
  uint32_t Count;
  EncoderParameter Parameter[1];
};
inline constexpr GUID EncoderQuality = {0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};
inline constexpr uint32_t EncoderParameterValueTypeLong = 4;

// A locked bitmap's pixels. libgdiplus takes the record for its own, larger one and writes 88
// bytes into it, so it carries room for the rest; zero it before locking.
struct BitmapData {
  uint32_t Width;
  uint32_t Height;
  int32_t Stride;
  PixelFormat Format;
  void* Scan0;
  uintptr_t Reserved;
  uint8_t libgdiplusTail[64];
};
inline constexpr uint32_t ImageLockModeRead = 1;
inline constexpr uint32_t ImageLockModeWrite = 2;

// The plain records that flat-API calls take, laid out as GDI+ publishes them.
struct GpRect {  // integer rectangle: corner and size
  int32_t X, Y, Width, Height;
};
struct GpRectF {
  REAL X, Y, Width, Height;
  bool operator==(const GpRectF&) const = default;
};
struct GpPointF {
  REAL X, Y;
};
struct ColorMatrix {  // row-major, as GDI+ reads it
  REAL m[5][5];
};
inline constexpr int UnitPixel = 2;
inline constexpr int UnitPoint = 3;
inline constexpr int LineCapRound = 2;
inline constexpr int LineJoinRound = 2;

// A device context. libgdiplus takes a graphics (GpGraphics*) for one, and the font calls only
// test it for null.
using HDC = void*;

// The logical-font record in its 8-bit form, laid out as libgdiplus reads it: LONG is 32 bits
// wide here, and the face name is taken as UTF-8 bytes, at most 31 of them before the zero.
inline constexpr int LF_FACESIZE = 32;
struct LOGFONTA {
  int32_t lfHeight;  // negative: the character height in pixels, which libgdiplus takes as the em size
  int32_t lfWidth;
  int32_t lfEscapement;
  int32_t lfOrientation;
  int32_t lfWeight;  // above 400 is bold
  uint8_t lfItalic;
  uint8_t lfUnderline;
  uint8_t lfStrikeOut;
  uint8_t lfCharSet;
  uint8_t lfOutPrecision;
  uint8_t lfClipPrecision;
  uint8_t lfQuality;
  uint8_t lfPitchAndFamily;
  char lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTA) == 60);

inline constexpr PixelFormat PixelFormat32bppARGB = 0x0026200A;
// Colour channels premultiplied by alpha: the layout cairo draws into, so a bitmap of this
// format is drawn on in place.
inline constexpr PixelFormat PixelFormat32bppPARGB = 0x000E200B;
inline constexpr int SmoothingModeAntiAlias = 4;
inline constexpr int InterpolationModeHighQualityBicubic = 7;

extern "C" {
// Start-up. GdiplusShutdown is deliberately not declared: it tears libgdiplus down for every
// user in the process and aborts while fonts are alive.
GpStatus GdiplusStartup(uint32_t* token, const GdiplusStartupInput* input, void* output);

// Images and bitmaps.
GpStatus GdipCreateBitmapFromScan0(int width, int height, int stride, PixelFormat format, uint8_t* scan0,
                                   GpBitmap** bitmap);
GpStatus GdipDisposeImage(GpImage* image);
GpStatus GdipBitmapGetPixel(GpBitmap* bitmap, int x, int y, ARGB* color);
GpStatus GdipGetImageWidth(GpImage* image, uint32_t* width);
GpStatus GdipGetImageHeight(GpImage* image, uint32_t* height);
GpStatus GdipGetImageEncodersSize(uint32_t* numEncoders, uint32_t* size);
GpStatus GdipGetImageEncoders(uint32_t numEncoders, uint32_t size, ImageCodecInfo* encoders);
GpStatus GdipSaveImageToFile(GpImage* image, const char16_t* filename, const GUID* encoder,
                             const EncoderParameters* params);
GpStatus GdipLoadImageFromFile(const char16_t* filename, GpImage** image);
// The format argument is ignored by libgdiplus: the copy keeps the source's format.
GpStatus GdipCloneBitmapAreaI(int x, int y, int width, int height, PixelFormat format, GpBitmap* source,
                              GpBitmap** clone);
GpStatus GdipGetImagePixelFormat(GpImage* image, PixelFormat* format);
// Locked in the bitmap's own format, the record points at the bitmap's memory; in another
// format, at a converted copy that unlocking frees (and, when locked for writing, copies back).
GpStatus GdipBitmapLockBits(GpBitmap* bitmap, const GpRect* rect, uint32_t flags, PixelFormat format,
                            BitmapData* locked);
GpStatus GdipBitmapUnlockBits(GpBitmap* bitmap, BitmapData* locked);

// Graphics.
GpStatus GdipGetImageGraphicsContext(GpImage* image, GpGraphics** graphics);
// Follows the HDC as a graphics: call it through CreateFromHDC only, which refuses any other value.
GpStatus GdipCreateFromHDC(HDC hdc, GpGraphics** graphics);
GpStatus GdipGetPageUnit(GpGraphics* graphics, int* unit);
GpStatus GdipSetPageUnit(GpGraphics* graphics, int unit);
GpStatus GdipDeleteGraphics(GpGraphics* graphics);
GpStatus GdipGraphicsClear(GpGraphics* graphics, ARGB color);
GpStatus GdipSetSmoothingMode(GpGraphics* graphics, int mode);
// Stored, but libgdiplus draws images with cairo's default filter whatever the mode.
GpStatus GdipSetInterpolationMode(GpGraphics* graphics, int mode);
GpStatus GdipFillRectangle(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);
GpStatus GdipFillEllipse(GpGraphics* graphics, GpBrush* brush, REAL x, REAL y, REAL width, REAL height);

GpStatus GdipBitmapSetPixel(GpBitmap* bitmap, int x, int y, ARGB color);
GpStatus GdipDrawImageI(GpGraphics* graphics, GpImage* image, int x, int y);
GpStatus GdipDrawImageRectRectI(GpGraphics* graphics, GpImage* image, int dstX, int dstY, int dstWidth,
                                int dstHeight, int srcX, int srcY, int srcWidth, int srcHeight, int srcUnit,
                                const GpImageAttributes* attributes, void* callback, void* callbackData);

// Brushes.
GpStatus GdipCreateSolidFill(ARGB color, GpSolidFill** brush);
// A gradient from color1 to color2 along a line through the rectangle turned `angle` degrees
// clockwise; wrapMode 0 tiles it beyond the rectangle.
GpStatus GdipCreateLineBrushFromRectWithAngleI(const GpRect* rect, ARGB color1, ARGB color2, REAL angle,
                                               int isAngleScalable, int wrapMode, GpLineGradient** brush);
// The image's pixels are copied; wrap modes 0 to 4 (tile, flip x, flip y, flip both, clamp).
GpStatus GdipCreateTexture(GpImage* image, int wrapMode, GpTexture** brush);

// Pens.
GpStatus GdipCreatePen1(ARGB color, REAL width, int unit, GpPen** pen);
GpStatus GdipSetPenLineCap197819(GpPen* pen, int startCap, int endCap, int dashCap);
GpStatus GdipSetPenLineJoin(GpPen* pen, int lineJoin);
GpStatus GdipGetPenDashStyle(GpPen* pen, int* dashStyle);
GpStatus GdipSetPenDashStyle(GpPen* pen, int dashStyle);
GpStatus GdipDrawLineI(GpGraphics* graphics, GpPen* pen, int x1, int y1, int x2, int y2);

// String formats: the alignment of text in its layout rectangle (0 near, 1 centre, 2 far).
GpStatus GdipCreateStringFormat(int formatFlags, uint16_t language, GpStringFormat** format);
GpStatus GdipSetStringFormatAlign(GpStringFormat* format, int align);
GpStatus GdipGetStringFormatAlign(GpStringFormat* format, int* align);
GpStatus GdipSetStringFormatLineAlign(GpStringFormat* format, int align);
GpStatus GdipGetStringFormatLineAlign(GpStringFormat* format, int* align);

// Fonts and font families. A family made from a name never fails for an unknown name: fontconfig
// substitutes ("Arial" is Liberation Sans when fonts-liberation is installed). Every call holds
// TextLock().
GpStatus GdipCreateFontFromLogfontA(HDC hdc, const LOGFONTA* logfont, GpFont** font);
GpStatus GdipCreateFontFamilyFromName(const char16_t* name, GpFontCollection* collection, GpFontFamily** family);
GpStatus GdipCreateFont(const GpFontFamily* family, REAL emSize, int style, int unit, GpFont** font);
GpStatus GdipGetFontSize(GpFont* font, REAL* size);
GpStatus GdipGetFontStyle(GpFont* font, int* style);
GpStatus GdipGetFamily(GpFont* font, GpFontFamily** family);  // a copy that the caller frees
GpStatus GdipGetFamilyName(const GpFontFamily* family, char16_t name[LF_FACESIZE], uint16_t language);
GpStatus GdipGetLogFontA(GpFont* font, GpGraphics* graphics, LOGFONTA* logfont);  // what the font was made of

// Image attributes: a colour matrix and a grey matrix that recolour what is drawn through them.
GpStatus GdipCreateImageAttributes(GpImageAttributes** attributes);
GpStatus GdipCloneImageAttributes(const GpImageAttributes* attributes, GpImageAttributes** clone);
GpStatus GdipSetImageAttributesColorMatrix(GpImageAttributes* attributes, int adjustType, int enable,
                                           const ColorMatrix* colorMatrix, const ColorMatrix* greyMatrix,
                                           int flags);

// ---------------------------------------------------------------------------------------------
// Paths. Figures of lines, arcs and Bézier curves, for filling, outlining and hit-testing.
// Adding to a figure continues it from its last point; rectangles, ellipses and polygons are
// closed figures of their own. (GdipWidenPath and GdipWarpPath are no-ops in libgdiplus that
// print warnings: not declared.)
inline constexpr int FillModeAlternate = 0;
// A point's type: the low bits say what it is, the high ones mark figure ends and markers.
inline constexpr uint8_t PathPointTypeMask = 0x07;
inline constexpr uint8_t PathPointTypeBezier = 3;  // a curve's two control points and its end

// The outlines of a text's glyphs, laid out in the rectangle as the string format says (null:
// from the top left); emSize in world units. A text call: hold TextLock.
GpStatus GdipAddPathString(GpPath* path, const char16_t* string, int length, const GpFontFamily* family, int style,
                           REAL emSize, const GpRectF* layoutRect, const GpStringFormat* format);
GpStatus GdipCreatePath(int fillMode, GpPath** path);
GpStatus GdipClonePath(GpPath* path, GpPath** clone);
GpStatus GdipResetPath(GpPath* path);
GpStatus GdipGetPointCount(GpPath* path, int* count);
GpStatus GdipGetPathPoints(GpPath* path, GpPointF* points, int count);
GpStatus GdipGetPathTypes(GpPath* path, uint8_t* types, int count);
GpStatus GdipStartPathFigure(GpPath* path);
GpStatus GdipClosePathFigure(GpPath* path);
GpStatus GdipAddPathLine(GpPath* path, REAL x1, REAL y1, REAL x2, REAL y2);
GpStatus GdipAddPathLine2(GpPath* path, const GpPointF* points, int count);
GpStatus GdipAddPathArc(GpPath* path, REAL x, REAL y, REAL width, REAL height, REAL startAngle, REAL sweepAngle);
GpStatus GdipAddPathBezier(GpPath* path, REAL x1, REAL y1, REAL x2, REAL y2, REAL x3, REAL y3, REAL x4, REAL y4);
GpStatus GdipAddPathRectangle(GpPath* path, REAL x, REAL y, REAL width, REAL height);
GpStatus GdipAddPathEllipse(GpPath* path, REAL x, REAL y, REAL width, REAL height);
GpStatus GdipAddPathPolygon(GpPath* path, const GpPointF* points, int count);
// With no graphics: whether the pixel at (x, y), that is its centre, lies inside the fill.
GpStatus GdipIsVisiblePathPoint(GpPath* path, REAL x, REAL y, GpGraphics* graphics, int* result);
GpStatus GdipFillPath(GpGraphics* graphics, GpBrush* brush, GpPath* path);
GpStatus GdipDrawPath(GpGraphics* graphics, GpPen* pen, GpPath* path);

// Shapes on a graphics. Integer coordinates are whole units of the page; angles in degrees,
// clockwise from the x-axis.
GpStatus GdipDrawEllipseI(GpGraphics* graphics, GpPen* pen, int x, int y, int width, int height);
GpStatus GdipFillPieI(GpGraphics* graphics, GpBrush* brush, int x, int y, int width, int height, REAL startAngle,
                      REAL sweepAngle);
GpStatus GdipDrawPieI(GpGraphics* graphics, GpPen* pen, int x, int y, int width, int height, REAL startAngle,
                      REAL sweepAngle);
GpStatus GdipFillRectangleI(GpGraphics* graphics, GpBrush* brush, int x, int y, int width, int height);
GpStatus GdipDrawRectangleI(GpGraphics* graphics, GpPen* pen, int x, int y, int width, int height);
GpStatus GdipDrawImageRectRect(GpGraphics* graphics, GpImage* image, REAL dstX, REAL dstY, REAL dstWidth,
                               REAL dstHeight, REAL srcX, REAL srcY, REAL srcWidth, REAL srcHeight, int srcUnit,
                               const GpImageAttributes* attributes, void* callback, void* callbackData);

// Clipping, in world coordinates.
inline constexpr int CombineModeIntersect = 1;
GpStatus GdipSetClipPath(GpGraphics* graphics, GpPath* path, int combineMode);
GpStatus GdipSetClipRect(GpGraphics* graphics, REAL x, REAL y, REAL width, REAL height, int combineMode);
GpStatus GdipResetClip(GpGraphics* graphics);
// The graphics' state (transform, clip, modes) kept aside and put back.
GpStatus GdipSaveGraphics(GpGraphics* graphics, uint32_t* state);
GpStatus GdipRestoreGraphics(GpGraphics* graphics, uint32_t state);

// Rendering modes. libgdiplus stores the compositing quality without using it.
GpStatus GdipGetSmoothingMode(GpGraphics* graphics, int* mode);
GpStatus GdipSetCompositingQuality(GpGraphics* graphics, int quality);
GpStatus GdipGetCompositingQuality(GpGraphics* graphics, int* quality);
GpStatus GdipGetInterpolationMode(GpGraphics* graphics, int* mode);

// The world transform: device = k * W(world), k the page unit's scale (WorldToDevice). New
// transforms act after the one in force with MatrixOrderAppend, before it with Prepend.
// GdipTransformPoints is a stub that prints to stdout: not declared.
inline constexpr int MatrixOrderPrepend = 0;
inline constexpr int MatrixOrderAppend = 1;
GpStatus GdipScaleWorldTransform(GpGraphics* graphics, REAL sx, REAL sy, int order);
GpStatus GdipTranslateWorldTransform(GpGraphics* graphics, REAL dx, REAL dy, int order);
GpStatus GdipRotateWorldTransform(GpGraphics* graphics, REAL angle, int order);
GpStatus GdipMultiplyWorldTransform(GpGraphics* graphics, GpMatrix* matrix, int order);
GpStatus GdipResetWorldTransform(GpGraphics* graphics);
GpStatus GdipGetWorldTransform(GpGraphics* graphics, GpMatrix* matrix);
GpStatus GdipSetWorldTransform(GpGraphics* graphics, GpMatrix* matrix);
GpStatus GdipGetDpiX(GpGraphics* graphics, REAL* dpi);
GpStatus GdipCreateMatrix(GpMatrix** matrix);
// The affine map x' = m11 x + m21 y + dx, y' = m12 x + m22 y + dy.
GpStatus GdipCreateMatrix2(REAL m11, REAL m12, REAL m21, REAL m22, REAL dx, REAL dy, GpMatrix** matrix);
GpStatus GdipGetMatrixElements(GpMatrix* matrix, REAL* elements);  // m11, m12, m21, m22, dx, dy

// Text. Text calls hold TextLock. Both ignore the page unit; boxes are in world units.
GpStatus GdipDrawString(GpGraphics* graphics, const char16_t* string, int length, const GpFont* font,
                        const GpRectF* layoutRect, const GpStringFormat* format, const GpBrush* brush);
GpStatus GdipMeasureString(GpGraphics* graphics, const char16_t* string, int length, const GpFont* font,
                           const GpRectF* layoutRect, const GpStringFormat* format, GpRectF* boundingBox,
                           int* codepointsFitted, int* linesFilled);
// ---------------------------------------------------------------------------------------------

// Freeing, with GdipDisposeImage and GdipDeleteGraphics above. Called only by the handles below.
GpStatus GdipDeleteBrush(GpBrush* brush);
GpStatus GdipDeletePen(GpPen* pen);
GpStatus GdipDeleteFont(GpFont* font);
GpStatus GdipDeleteFontFamily(GpFontFamily* family);
GpStatus GdipDeleteStringFormat(GpStringFormat* format);
GpStatus GdipDisposeImageAttributes(GpImageAttributes* attributes);
GpStatus GdipDeletePath(GpPath* path);
GpStatus GdipDeleteMatrix(GpMatrix* matrix);
GpStatus GdipDeleteRegion(GpRegion* region);
}

// The owners of native objects (Handle.h), one per kind.
using BrushHandle = Handle<GpBrush, &GdipDeleteBrush>;
using PenHandle = Handle<GpPen, &GdipDeletePen>;
using FontHandle = Handle<GpFont, &GdipDeleteFont>;
using FontFamilyHandle = Handle<GpFontFamily, &GdipDeleteFontFamily>;
using StringFormatHandle = Handle<GpStringFormat, &GdipDeleteStringFormat>;
using ImageHandle = Handle<GpImage, &GdipDisposeImage>;
using ImageAttributesHandle = Handle<GpImageAttributes, &GdipDisposeImageAttributes>;
using GraphicsHandle = Handle<GpGraphics, &GdipDeleteGraphics>;
using PathHandle = Handle<GpPath, &GdipDeletePath>;
using MatrixHandle = Handle<GpMatrix, &GdipDeleteMatrix>;
using RegionHandle = Handle<GpRegion, &GdipDeleteRegion>;

// How many native objects of each kind handles own right now, process-wide, by kind name
// ("brush", "pen", "font", "family", "format", "image", "attributes", "graphics", "path",
// "matrix", "region"): what tests and the soak watch to prove that nothing leaks.
std::vector<std::pair<const char*, long>> LiveHandles();

// The run-time error a failing status becomes: one of the numbers the error handler answers
// with "continue". A non-OK status is no error by itself; it only ends the native steps that
// needed success, with no dialog and nothing raised to the caller.
inline constexpr int32_t StatusFailed = 400;

// The status check every flat-API call goes through: the status passes Execute (the object
// model's seam); OK returns, any other status raises StatusFailed with the status's number in
// its text. Inside a procedure's trap the failing step ends and the procedure goes on with the
// next one (a one-step trap returns its default result). Where an operation must answer a
// failure itself (empty the wrapper, raise a fault), it tests Succeeded instead.
void Check(GpStatus status);

// The same seam without the error: true when the status is OK.
bool Succeeded(GpStatus status);

// libgdiplus's font map is not thread-safe: every font and text call holds this lock.
std::recursive_mutex& TextLock();

// A device's logical pixels per inch vertically (what GetDeviceCaps answers for index 90). A
// device context here is a graphics, and libgdiplus converts font sizes at 96 dpi when no
// display is reachable, so this answers 96 for every device; a host that knows its screen may
// refine it.
int32_t LogPixelsY(HDC hdc) noexcept;

// Device contexts. libgdiplus takes any HDC for a graphics and follows the pointer, so a value
// that is no live graphics crashes it. Whoever hands a graphics out as a device context (a host
// window, for its backing bitmap) registers it for as long as it lives, and unregisters it
// before freeing it. CreateFromHDC makes a new graphics on a registered device context and
// answers InvalidParameter for any other value, 0 included. Safe from any thread: a device
// context is not unregistered while a graphics is being made on it.
void RegisterHDC(GpGraphics* dc);
void UnregisterHDC(GpGraphics* dc) noexcept;
// The part `area` of a bitmap (clamped to it) in a premultiplied bitmap one pixel larger on every
// side, whose border repeats the part's edge pixels; null when nothing of the part lies on the
// bitmap. libgdiplus samples a scaled image beyond its edges, where it reads transparency and
// fades the image's outermost pixels; drawn from inside such a copy, the edges keep their colour.
ImageHandle PaddedCopy(GpBitmap* bitmap, GpRect area);

// Counts every registration and withdrawal: while it stands still, no device context has
// come or gone, and a graphics made on one is still good.
uint64_t HDCChanges() noexcept;
GpStatus CreateFromHDC(int64_t hdc, GpGraphics** graphics);
// The registration a device context is live under: a number that every RegisterHDC draws anew
// and that never comes back; 0 while the value is not registered. A graphics made on a device
// context belongs to that registration: once it changed, the bitmap under the graphics may be
// gone, even when a new device context took the old one's address.
uint64_t HDCStamp(int64_t hdc) noexcept;

// The class id of the image encoder for a MIME type ("image/png"), compared without regard to
// case. False when libgdiplus has no such encoder.
bool GetEncoderClsid(const std::u16string& mimeType, GUID& clsid);

}  // namespace tessel::mdl_GDIPlus
