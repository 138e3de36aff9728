#include "plot/Canvas.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <map>
#include <new>
#include <numbers>
#include <string_view>
#include <system_error>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr char kFont[] = "DejaVu Sans";

/// Nothing is thrown through the library, which is written in C.
cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int length)
{
  try {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
  return CAIRO_STATUS_SUCCESS;
}

void Check(cairo_status_t status)
{
  if (status != CAIRO_STATUS_SUCCESS)
    Fail(std::string("the picture cannot be drawn: ") + cairo_status_to_string(status));
}

/// A surface that goes with its scope.
struct SurfaceDeleter
{
  void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct ContextDeleter
{
  void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
};
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

struct PatternDeleter
{
  void operator()(cairo_pattern_t* pattern) const noexcept { cairo_pattern_destroy(pattern); }
};
using Pattern = std::unique_ptr<cairo_pattern_t, PatternDeleter>;

/// Numbers the names of an SVG text ("surface12", "image7") in their order from 1: the library counts them over the
/// whole process, and two pictures of one process would differ. Names of glyphs have a dash and are left alone.
std::string Renumber(std::string_view svg)
{
  std::map<std::string, std::size_t, std::less<>> numbers;
  std::string                                     renumbered;
  renumbered.reserve(svg.size());
  while (!svg.empty()) {
    const std::size_t id        = svg.find("id=\"");
    const std::size_t reference = svg.find('#');
    const std::size_t mark      = std::min(id == std::string_view::npos ? id : id + 3, reference);
    if (mark == std::string_view::npos) break;
    renumbered += svg.substr(0, mark + 1);
    svg.remove_prefix(mark + 1);
    const std::size_t letters = svg.find_first_not_of("abcdefghijklmnopqrstuvwxyz-");
    if (letters == std::string_view::npos || letters == 0) continue;
    const std::size_t end = svg.find_first_not_of("0123456789", letters);
    if (end == letters || end == std::string_view::npos || (svg[end] != '"' && svg[end] != ')')) continue;
    const std::string name(svg.substr(0, end));
    const auto        number = numbers.try_emplace(name, numbers.size() + 1).first;
    renumbered += name.substr(0, letters) + std::to_string(number->second);
    svg.remove_prefix(end);
  }
  return renumbered += svg;
}

/// @return how large a sheet is drawn for a picture
PictureSize SheetFor(const PictureSize& picture)
{
  constexpr double kLeastWidth  = 480.0;
  constexpr double kLeastHeight = 360.0;
  const double     factor       = std::max({1.0, kLeastWidth / picture.width, kLeastHeight / picture.height});
  return {static_cast<int>(std::lround(factor * picture.width)),
          static_cast<int>(std::lround(factor * picture.height))};
}

}  // namespace

PictureFormat PictureFormatOf(const std::filesystem::path& path)
{
  const std::string extension = LowerExtension(path);
  if (extension == ".png") return PictureFormat::Png;
  if (extension == ".svg") return PictureFormat::Svg;
  if (extension == ".pdf") return PictureFormat::Pdf;
  Fail(path.string() + ": expected a name that ends in .png, .svg or .pdf");
}

PictureSize ParsePictureSize(const std::string& text)
{
  constexpr int kLeast    = 100;
  constexpr int kGreatest = 10000;
  PictureSize   size{0, 0};
  const char*   end    = text.data() + text.size();
  const auto    width  = std::from_chars(text.data(), end, size.width);
  bool          isSize = width.ec == std::errc() && width.ptr != end && ToLower(*width.ptr) == 'x';
  if (isSize) {
    const auto height = std::from_chars(width.ptr + 1, end, size.height);
    isSize            = height.ec == std::errc() && height.ptr == end;
  }
  if (!isSize || std::min(size.width, size.height) < kLeast || std::max(size.width, size.height) > kGreatest)
    Fail("'" + text + "' is no size of a picture, expected WxH such as 1200x900, 100 to 10000 each");
  return size;
}

struct Canvas::Drawing
{
  std::string bytes;  // outlives the surface, which writes to it
  Surface     surface;
  Context     context;

  void SetColour(const Colour& colour) const
  {
    cairo_set_source_rgba(context.get(), colour.red, colour.green, colour.blue, colour.alpha);
  }

  void SetLine(const LineStyle& style) const
  {
    SetColour(style.colour);
    cairo_set_line_width(context.get(), style.width);
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    const double dashes[] = {4.0 * style.width, 3.0 * style.width};
    cairo_set_dash(context.get(), dashes, style.isDashed ? 2 : 0, 0.0);
  }

  void SetFont(const TextStyle& style) const
  {
    cairo_select_font_face(context.get(), kFont, CAIRO_FONT_SLANT_NORMAL,
                           style.isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context.get(), style.size);
  }

  void Trace(std::span<const Spot> points) const
  {
    cairo_new_path(context.get());
    for (const Spot& point : points) cairo_line_to(context.get(), point.x, point.y);
  }
};

Canvas::Canvas(PictureFormat format, const PictureSize& size, const Colour& background)
    : format_(format), size_(SheetFor(size)), background_(background), drawing_(std::make_unique<Drawing>())
{
  switch (format) {
    case PictureFormat::Png:
      drawing_->surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height));
      break;
    case PictureFormat::Svg:
      drawing_->surface.reset(cairo_svg_surface_create_for_stream(Append, &drawing_->bytes, size.width, size.height));
      break;
    case PictureFormat::Pdf:
      drawing_->surface.reset(cairo_pdf_surface_create_for_stream(Append, &drawing_->bytes, size.width, size.height));
      // Its own date would make every picture another one.
      cairo_pdf_surface_set_metadata(drawing_->surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
      break;
  }
  Check(cairo_surface_status(drawing_->surface.get()));
  drawing_->context.reset(cairo_create(drawing_->surface.get()));
  cairo_t* const context = drawing_->context.get();
  Check(cairo_status(context));
  cairo_scale(context, static_cast<double>(size.width) / size_.width, static_cast<double>(size.height) / size_.height);
  isReduced_ = size_.width != size.width;
  // The machine's own taste in fonts is no part of a picture.
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(context, options);
  cairo_font_options_destroy(options);
  if (background.alpha > 0.0) {
    drawing_->SetColour(background);
    cairo_paint(context);
  }
}

Canvas::~Canvas() = default;

int Canvas::GetPixelsPerUnit() const noexcept { return format_ == PictureFormat::Png ? 1 : 2; }

double Canvas::GetTextWidth(const std::string& text, const TextStyle& style) const
{
  drawing_->SetFont(style);
  cairo_text_extents_t extents;
  cairo_text_extents(drawing_->context.get(), text.c_str(), &extents);
  return extents.x_advance;
}

void Canvas::DrawText(const Spot& at, const std::string& text, const TextStyle& style)
{
  cairo_t* const context = drawing_->context.get();
  const double   share   = style.align == Align::Left ? 0.0 : style.align == Align::Centre ? 0.5 : 1.0;
  const double   back    = share == 0.0 ? 0.0 : share * GetTextWidth(text, style);
  drawing_->SetFont(style);
  cairo_save(context);
  cairo_translate(context, at.x, at.y);
  cairo_rotate(context, -style.angle * std::numbers::pi / 180.0);
  drawing_->SetColour(style.colour);
  cairo_move_to(context, -back, 0.0);
  cairo_show_text(context, text.c_str());
  cairo_restore(context);
  cairo_new_path(context);
}

void Canvas::DrawLine(std::span<const Spot> points, const LineStyle& style)
{
  drawing_->Trace(points);
  const bool isClosed = points.size() > 2 && points.front().x == points.back().x && points.front().y == points.back().y;
  if (isClosed) cairo_close_path(drawing_->context.get());
  drawing_->SetLine(style);
  cairo_stroke(drawing_->context.get());
}

void Canvas::DrawRectangle(const Spot& corner, double width, double height, const LineStyle& style)
{
  cairo_rectangle(drawing_->context.get(), corner.x, corner.y, width, height);
  drawing_->SetLine(style);
  cairo_stroke(drawing_->context.get());
}

void Canvas::FillPolygon(std::span<const Spot> points, const Colour& colour)
{
  drawing_->Trace(points);
  drawing_->SetColour(colour);
  cairo_fill(drawing_->context.get());
}

void Canvas::FillCircle(const Spot& centre, double radius, const Colour& colour)
{
  cairo_new_path(drawing_->context.get());
  cairo_arc(drawing_->context.get(), centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
  drawing_->SetColour(colour);
  cairo_fill(drawing_->context.get());
}

void Canvas::DrawCircle(const Spot& centre, double radius, const LineStyle& style)
{
  cairo_new_path(drawing_->context.get());
  cairo_arc(drawing_->context.get(), centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
  drawing_->SetLine(style);
  cairo_stroke(drawing_->context.get());
}

void Canvas::FillGradient(const Spot& corner, double width, double height,
                          std::span<const std::pair<double, Colour>> stops)
{
  const Pattern gradient(cairo_pattern_create_linear(0.0, corner.y + height, 0.0, corner.y));
  for (const auto& [position, colour] : stops)
    cairo_pattern_add_color_stop_rgb(gradient.get(), position, colour.red, colour.green, colour.blue);
  cairo_rectangle(drawing_->context.get(), corner.x, corner.y, width, height);
  cairo_set_source(drawing_->context.get(), gradient.get());
  cairo_fill(drawing_->context.get());
}

void Canvas::DrawBitmap(const Spot& corner, double width, double height, const Bitmap& bitmap)
{
  const Surface image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height));
  Check(cairo_surface_status(image.get()));
  unsigned char* const bytes  = cairo_image_surface_get_data(image.get());
  const auto           stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image.get()));
  const auto           row    = static_cast<std::size_t>(bitmap.width);
  for (std::size_t y = 0; y < static_cast<std::size_t>(bitmap.height); ++y)
    std::copy_n(bitmap.pixels.begin() + static_cast<std::ptrdiff_t>(y * row), row,
                reinterpret_cast<std::uint32_t*>(bytes + y * stride));
  cairo_surface_mark_dirty(image.get());
  cairo_t* const context = drawing_->context.get();
  cairo_save(context);
  cairo_translate(context, corner.x, corner.y);
  cairo_scale(context, width / bitmap.width, height / bitmap.height);
  cairo_set_source_surface(context, image.get(), 0.0, 0.0);
  // A pixel is a pixel: nothing is blurred where sizes agree.
  cairo_pattern_set_filter(cairo_get_source(context),
                           format_ == PictureFormat::Png && !isReduced_ ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
  cairo_paint(context);
  cairo_restore(context);
}

void Canvas::BeginClip(const Spot& corner, double width, double height)
{
  cairo_save(drawing_->context.get());
  cairo_rectangle(drawing_->context.get(), corner.x, corner.y, width, height);
  cairo_clip(drawing_->context.get());
}

void Canvas::EndClip() { cairo_restore(drawing_->context.get()); }

std::string Canvas::Finish()
{
  Check(cairo_status(drawing_->context.get()));
  if (format_ == PictureFormat::Png) {
    Check(cairo_surface_write_to_png_stream(drawing_->surface.get(), Append, &drawing_->bytes));
    return std::move(drawing_->bytes);
  }
  cairo_show_page(drawing_->context.get());
  cairo_surface_finish(drawing_->surface.get());
  Check(cairo_surface_status(drawing_->surface.get()));
  return format_ == PictureFormat::Svg ? Renumber(drawing_->bytes) : std::move(drawing_->bytes);
}

}  // namespace quilon
