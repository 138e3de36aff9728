#include "PictureBytes.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>

#include <cairo.h>

namespace quilon_test {

namespace {

cairo_status_t Take(void* rest, unsigned char* data, unsigned int length)
{
  auto& bytes = *static_cast<std::string_view*>(rest);
  if (bytes.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::copy_n(bytes.begin(), length, reinterpret_cast<char*>(data));
  bytes.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

quilon::Bitmap ReadPng(const std::string& bytes)
{
  std::string_view                                                   rest(bytes);
  const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
      cairo_image_surface_create_from_png_stream(Take, &rest), cairo_surface_destroy);
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw std::runtime_error("no PNG");
  quilon::Bitmap bitmap{
      cairo_image_surface_get_width(surface.get()), cairo_image_surface_get_height(surface.get()), {}};
  const bool  isOpaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
  const auto* data     = cairo_image_surface_get_data(surface.get());
  const int   stride   = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < bitmap.height; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
    for (int x = 0; x < bitmap.width; ++x) bitmap.pixels.push_back(row[x] | (isOpaque ? 0xFF000000U : 0U));
  }
  return bitmap;
}

}  // namespace quilon_test
