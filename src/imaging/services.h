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
#include "host/files/files.h"
#include "imaging/cut_source.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/measure/measure.h"
#include "imaging/types.h"

namespace quillon::imaging {

// The file of the program folder by which a picture passes between the program and its helpers, as by a clipboard.
// Written by whoever sends the picture, and overwritten by the next one.
inline constexpr const char* kClipBoardLane = "ClipBoard.lane";

// What Services asks of its owner: while it waits for prefetched work or for another process, and for sizes that it
// cannot find by itself. Each of them may be empty.
struct WaitHooks {
  std::function<void()> idle;       // called every few milliseconds, so that the window keeps its turns
  std::function<bool()> stopped;    // whether a stop is requested: a disk that hangs is then waited for no longer
  std::function<double()> seconds;  // the clock that measures how long a disk is silent; the system's if empty
  Measurer::OtherKinds otherKinds;  // sizes of files that are in no format read here; called on any thread
};

// All pixel work. One object per process, after start-up used from one thread. Every operation that writes does so
// through host::Files::Save and leaves no part of a file when it fails. Nothing is shown or asked here: a full disk is
// a failure as any other (Status::DiskFull), after which the same call can be made again; host::Saver asks about it.
//
// Read are jpg, png, gif (first frame), tif (first page), bmp and psd (merged picture); the content decides, not the
// name. Grey, RGB and CMYK are kept as they are, with 8 or 16 bits and alpha.
//
// Pictures are worked on as stored: the EXIF orientation tag is kept where it still holds (not by gif and bmp, which
// have none) and reset where the picture was turned. The ICC profile and the DPI go with every result that can hold
// them; the EXIF thumbnail never does. Angles are degrees, positive counter-clockwise.
class Services {
 public:
  // programFolder holds the file of the private clipboard lane.
  Services(host::Files& files, const std::string& programFolder, WaitHooks hooks = {}, const Limits& limits = {});
  ~Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  // The image library sets itself up at its first picture; shutting down ends the work ahead.
  void ImageWizardStartUp();
  void ImageWizardShutDown();

  // Measures a picture without decoding it; see Measurer::Measure.
  Status ImageInfo(const std::string& path, ImageFacts& facts, Want want = Want::Size);
  // How many answers of ImageInfo are remembered, roughly; what is remembered beyond them is forgotten.
  void RememberSizes(std::size_t count);

  // --- Images in memory. Operations on no image fail.
  Status LoadImageFromFile(const std::string& path, Image& out);
  void DisposeImage(Image& image);
  Status CloneImage(const Image& source, Image& out);
  int GetImageWidth(const Image& image) const;
  int GetImageHeight(const Image& image) const;
  int GetImageResolution(const Image& image) const;
  void SetImageResolution(Image& image, int dpi);  // metadata only; 0 is ignored
  // About the centre; the canvas grows to hold the whole turned picture (bounding box rounded up to whole pixels);
  // multiples of 90 degrees are exact.
  Status RotateImage(Image& image, double angle, base::Colour background);
  // Lanczos with three lobes; width and height at least 1.
  Status ResampleImage(Image& image, int width, int height);
  Status ConvertImageToGrayMode(Image& image);  // Rec. 601 weights, 0.299 0.587 0.114, as the screen shows them
  Status Invert(Image& image);                  // alpha stays; CMYK is inverted as displayed and becomes RGB
  Status Threshold(Image& image, int level);    // grey value >= level becomes white, below black; alpha lies on white
  // The rectangle of image as a picture of its own; what lies outside is white and opaque.
  Status CutImage(Image& image, base::Rect rect);
  // Draws image, scaled to the size of drawn, at its place on canvas; a transparent picture is laid over what is
  // there. Colours become the canvas's.
  Status DrawImage(Image& canvas, const Image& image, base::Rect drawn);
  Status NewCanvas(base::Size size, base::Colour colour, Image& out);
  // EXIF and orientation of from, and its resolution, for a picture that was made of it.
  void CopyTags(Image& image, const Image& from);
  // The private lane between the program and its helpers, a file in the program folder; the desktop's clipboard is
  // never touched. A picture comes out as it was put in, with everything that goes with it. Missing: nothing was put.
  Status PutImageOnClipBoard(const Image& image);
  Status CreateImageFromClipBoard(Image& out);

  // --- Saves. The format is the operation's, whatever the path's extension says.
  Status SaveImageToJpgFile(const Image& image, const std::string& path, int quality, Exif exif);
  Status SaveImageToPngFile(const Image& image, const std::string& path);
  Status SaveImageToGifFile(const Image& image, const std::string& path);
  Status SaveImageToTifFile(const Image& image, const std::string& path, int compression);  // 4 CCITT G4, 2 LZW
  Status SaveImageToBmpFile(const Image& image, const std::string& path);                   // 24 bit
  // The type is found by substring in the order "jp", "png", "gif", "tif", "bmp"; none of them fails. The image is
  // disposed, except after a full disk, so that the save can be tried again.
  Status SaveByType(Image& image, const std::string& path, const std::string& type, const SaveOptions& options);
  // Quality is clamped to 0..100.
  Status SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality);
  // The picture of a window: turned by angle as RotateImage does, on white; ".psd" in the name becomes ".jpg".
  Status SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality, double angle);

  // --- File to file.
  // The canvas is white, opaque unless transparency is kept, with 8 bits a sample; CMYK stays in jpg and tif and
  // becomes sRGB elsewhere. Damage is looked for in the whole source, also outside rect. Source and destination may be
  // the same file: what stood there is kept as "<source>.bak". Any other file that stood at destination is replaced by
  // the result. When the cut fails nothing changes.
  Status CropToFile(const CropRequest& request);
  // Decodes the picture at path for several cuts into files of that type. Nothing is decoded if exactly the work cuts,
  // crops of that picture, was prefetched. Waits for it as PopPrefetched does; a stop request ends the wait (Stopped).
  Status OpenForCuts(const std::string& path, Encoder encoder, CutSource& out, const FileWork& cuts = {});
  // As CropToFile, from a source that was opened for the request's file: the results are the same, byte for byte. A
  // file that has changed since, another type, or a request that was not prefetched goes the long way.
  Status CropToFile(const CutSource& source, const CropRequest& request);
  // As CropToFile for gif output, whatever the encoder says: transparency is kept. overlay is drawn on the cut.
  Status CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay = std::nullopt);
  // The request that CropToGif makes of one.
  static CropRequest AsGif(CropRequest request);
  // The source rectangle, turned by rotation (uncovered corners in colour), scaled to drawn x scale (rounded) and put
  // at the offset, which may lie outside; 8 bits a sample. The type is the destination's extension.
  Status AddBoardToFile(const BorderRequest& request);
  // Scales to width x height; the type is the destination's extension. EXIF goes along where it is asked for.
  Status ZoomPic(const std::string& source, const std::string& destination, int width, int height,
                 Exif exif = Exif::Drop);

  // A reduced picture for the screen, neither side above limit, 8-bit RGB rows without padding.
  struct Preview {
    base::Size size;      // of the pixels here
    base::Size original;  // of the whole picture
    std::vector<unsigned char> rgb;
  };
  // Unlike all others it may be called from any thread.
  Status LoadPreview(const std::string& path, base::Size limit, Preview& out);

  // Whether the file at path is a profile (ICC) of these colours that conversions can use; if not, why.
  enum class ProfileColours { Rgb, Cmyk };
  Status CheckProfile(const std::string& path, ProfileColours colours);

  // --- Prefetching. What is planned here may be worked on by other threads before it is asked for. A finished answer
  // is handed out only for exactly that work on that unchanged source. A new plan replaces the old one, and what no
  // longer stands in it is thrown away. If a disk does not answer for half a minute, the call that waits for it fails
  // with Stopped and host::kDiskUnresponsive.
  //
  // CropToFile, CropToGif and ImageInfo use what was prefetched by themselves; a crop to gif is planned as CropToGif
  // reads its request (see AsGif). Several crops of one picture are asked for by OpenForCuts, other work by
  // PopPrefetched.
  void PlanWork(const std::vector<FileWork>& upcoming);
  void PlanMeasures(std::vector<std::string> upcoming);
  // The outputs of work, each as bytes, in the order of its steps; nothing unless it was planned and has succeeded, on
  // a source that is unchanged. Waits for work that is under way. Stopped: the wait was given up.
  using PrefetchedFiles = std::vector<std::string>;
  Status PopPrefetched(const FileWork& work, std::optional<PrefetchedFiles>& files);
  // Saves one of them under its destination.
  Status SavePrefetched(const std::string& content, const std::string& path, Encoder encoder);

 private:
  Status CropUnder(const CropRequest& request, const Overlay& overlay);

  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
