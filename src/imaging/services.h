// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/colour.h"
#include "base/rect.h"
#include "host/disk_thread.h"
#include "host/files/files.h"
#include "imaging/cut_source.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/measure/measure.h"
#include "imaging/types.h"

namespace quillon::imaging {

// The file of the program folder that transfers a picture between the program and its helpers, like a clipboard. Each
// transfer overwrites it.
inline constexpr const char* kClipBoardLane = "ClipBoard.lane";

// All operations on pictures. A process has one object, which is used from one thread.
// Files are written by host::Files::Save, so that a failed operation leaves no incomplete file. No box is shown here: a
// full disk is a failure (Status::DiskFull) after which the same call can be repeated; host::Saver asks about it.
//
// Formats that are read: jpg, png, gif (first frame), tif (first page), bmp and psd (merged picture). The content of
// the file decides, not its name. Grey, RGB and CMYK are kept as they are, with 8 or 16 bits and alpha.
//
// Operations use the pixels as they are stored. The EXIF orientation tag is copied to the result, and is reset if the
// picture was rotated. Formats without that tag (gif, bmp) get pixels that are turned upright when they are written,
// unless Orient::Defer says that the file is a work file. ICC profile and DPI are copied if the format can store them;
// the EXIF thumbnail never is. Angles are in degrees, positive counter-clockwise.
class Services {
 public:
  // programFolder holds the file of the private clipboard lane.
  // Every operation that reads or writes a picture of the user runs on thread, if set, and fails with Stopped if a disk
  // is unresponsive (see host::DiskThread::Run). Only small new files on local disks are written by the caller.
  // otherKinds measures files of formats that are not read here; it may be empty.
  Services(host::Files& files, const std::string& programFolder, host::DiskThread* thread = nullptr,
           const Limits& limits = {}, Measurer::OtherKinds otherKinds = {});
  ~Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  // The image library initialises itself at its first picture. ImageWizardShutDown ends the prefetcher.
  void ImageWizardStartUp();
  void ImageWizardShutDown();

  // Measures a picture without decoding it; see Measurer::Measure.
  Status ImageInfo(const std::string& path, ImageFacts& facts, Want want = Want::Size);
  // Remembers about that many answers of ImageInfo and forgets older ones.
  void RememberSizes(std::size_t count);
  // Stores the number of pages of a tif, or of frames of a gif or an animated png; see CountFrames. Nothing is decoded.
  // For any other picture it is 1. If the call fails, frames is unchanged.
  Status FramesIn(const std::string& path, int& frames);
  // Stores whether the file is a png with an alpha channel or transparent colours; see PngHasAlpha. If the call fails,
  // alpha is unchanged.
  Status AlphaIn(const std::string& path, bool& alpha);

  // --- Images in memory. Operations on no image fail.
  Status LoadImageFromFile(const std::string& path, Image& out);
  void DisposeImage(Image& image);
  Status CloneImage(const Image& source, Image& out);
  int GetImageWidth(const Image& image) const;
  int GetImageHeight(const Image& image) const;
  int GetImageResolution(const Image& image) const;
  void SetImageResolution(Image& image, int dpi);  // metadata only; 0 is ignored
  // Rotates about the centre. The canvas grows to the bounding box of the rotated picture, rounded up to whole pixels.
  // Multiples of 90 degrees are exact.
  Status RotateImage(Image& image, double angle, base::Colour background);
  // Lanczos with three lobes; width and height at least 1.
  Status ResampleImage(Image& image, int width, int height);
  Status ConvertImageToGrayMode(Image& image);  // Rec. 601 weights, 0.299 0.587 0.114, as the screen shows them
  Status Invert(Image& image);                  // alpha stays; CMYK is inverted as displayed and becomes RGB
  Status Threshold(Image& image, int level);    // grey value >= level becomes white, below black; alpha lies on white
  // Replaces image by its rectangle. Parts of the rectangle outside the picture are white and opaque.
  Status CutImage(Image& image, base::Rect rect);
  // Scales image to the size of drawn and draws it there on the canvas; transparent pixels leave the canvas visible.
  // Colours are converted to those of the canvas.
  Status DrawImage(Image& canvas, const Image& image, base::Rect drawn);
  Status NewCanvas(base::Size size, base::Colour colour, Image& out);
  // Copies EXIF, orientation and resolution from a picture to another that was made of it.
  void CopyTags(Image& image, const Image& from);
  // Gives an image that was rotated and rotated back the orientation of the picture at path, from which it was made.
  Status CopyOrientation(Image& image, const std::string& path);
  // Write and read kClipBoardLane; the clipboard of the desktop is not used. The picture is transferred unchanged, with
  // its metadata. Missing: no picture was written.
  Status PutImageOnClipBoard(const Image& image);
  Status CreateImageFromClipBoard(Image& out);

  // --- Saves. The operation decides the format, not the extension of the path.
  Status SaveImageToJpgFile(const Image& image, const std::string& path, int quality, Exif exif);
  Status SaveImageToPngFile(const Image& image, const std::string& path);
  Status SaveImageToGifFile(const Image& image, const std::string& path);
  Status SaveImageToTifFile(const Image& image, const std::string& path, int compression);  // 4 CCITT G4, 2 LZW
  Status SaveImageToBmpFile(const Image& image, const std::string& path, Orient orient = Orient::Apply);  // 24 bit
  // The type is the first of "jp", "png", "gif", "tif", "bmp" that the text contains; any other text fails. Disposes of
  // the image, except after a full disk, so that the save can be repeated.
  Status SaveByType(Image& image, const std::string& path, const std::string& type, const SaveOptions& options);
  // Quality is clamped to 0..100.
  Status SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality,
                       Orient orient = Orient::Apply);
  // Saves the picture rotated by angle on white, as RotateImage does. ".psd" in the name becomes ".jpg".
  Status SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality, double angle);

  // --- File to file.
  // The result has 8 bits a sample unless depth is kept. Areas outside the picture are white, and opaque unless alpha
  // is kept. CMYK remains in jpg and tif and becomes sRGB in other formats. The whole source is checked for damage,
  // also outside rect.
  // If source and destination are the same file, the old content is copied to "<source>.bak". Any other file at
  // destination is replaced by the result. A failed cut changes nothing.
  Status CropToFile(const CropRequest& request);
  // Decodes the picture at path for several cuts into files of that type. Nothing is decoded if exactly the work cuts,
  // crops of that picture, was prefetched. Waits for it as PopPrefetched does; a stop request ends the wait (Stopped).
  // Of a large JPEG only what cuts use is kept, unless cuts is empty. Any other crop decodes the picture again.
  Status OpenForCuts(const std::string& path, Encoder encoder, CutSource& out, const FileWork& cuts = {});
  // Makes a crop from a source that was opened for this file. The result has the same bytes as that of the other
  // CropToFile, which is called if the file has changed, another type is wanted or the request was not prefetched.
  Status CropToFile(const CutSource& source, const CropRequest& request);
  // Makes a crop as CropToFile does, into a gif that keeps transparency; the encoder of the request is ignored. overlay
  // is drawn on the cut.
  Status CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay = std::nullopt);
  // Returns the request that CropToGif passes to CropToFile.
  static CropRequest AsGif(CropRequest request);
  // Cuts every frame of an animated gif and keeps it an animation with the same colours; see CutGif. Of the request,
  // source, destination and rect count.
  Status CropFrames(const CropRequest& request);
  // Paints over rect in every frame of an animated gif with the colours around it; see RemoveLogo.
  Status PaintOverFrames(const CropRequest& request);
  // Draws a border; see BorderRequest. The result has 8 bits a sample. The extension of the destination selects the
  // format.
  Status AddBoardToFile(const BorderRequest& request);
  // Scales to width x height. The extension of the destination selects the format.
  Status ZoomPic(const std::string& source, const std::string& destination, int width, int height,
                 Exif exif = Exif::Drop);

  // Draw a picture as the request says; see PngCutRequest and PngOverBmpRequest. A plain cut of a png holds a few rows.
  // ICC profile, resolution and orientation are copied; EXIF is not. The whole source is checked for damage.
  // PngCut does not replace an animated png by its own result, which has only the first frame (Unsupported).
  // Unsupported: no such depth, or the source is no picture.
  Status PngCut(const PngCutRequest& request);
  Status PngOverBmp(const PngOverBmpRequest& request);

  // A reduced picture for the screen, neither side above limit, 8-bit RGB rows without padding.
  struct Preview {
    base::Size size;      // of the pixels here
    base::Size original;  // of the whole picture
    std::vector<unsigned char> rgb;
  };
  // May be called from any thread, unlike all other operations, and reads on the calling thread.
  Status LoadPreview(const std::string& path, base::Size limit, Preview& out);

  // Fails unless the file at path is an ICC profile of these colours that conversions can use.
  enum class ProfileColours { Rgb, Cmyk };
  Status CheckProfile(const std::string& path, ProfileColours colours);

  // --- Prefetching; see Prefetcher. Planned work is done by other threads in advance. A result is used only for
  // exactly that work on an unchanged source. A new plan replaces the old one and drops work that it does not contain.
  // A call that waits for a disk that is silent for host::kDiskTimeoutSeconds fails with Stopped and
  // host::kDiskUnresponsive.
  //
  // CropToFile, CropToGif, PngCut, PngOverBmp and ImageInfo use prefetched results by themselves; a crop to gif must be
  // planned as AsGif returns it. Several crops of one picture are read by OpenForCuts, other results by PopPrefetched.
  void PlanWork(const std::vector<FileWork>& upcoming);
  void PlanMeasures(std::vector<std::string> upcoming);
  // Gives the outputs of work as bytes, in the order of its steps; nothing unless it was planned, has succeeded, and
  // its source is unchanged. Waits for work in progress. Stopped: the wait was given up.
  using PrefetchedFiles = std::vector<std::string>;
  Status PopPrefetched(const FileWork& work, std::optional<PrefetchedFiles>& files);
  // Saves one output of prefetched work under its destination.
  Status SavePrefetched(std::shared_ptr<const std::string> content, const std::string& path, Encoder encoder);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
