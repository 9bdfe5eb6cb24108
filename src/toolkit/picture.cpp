#include "toolkit/picture.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

namespace gantry::platform {

namespace {

struct Point {
  float x;
  float y;
};

/// A filled polygon on a field of 16 by 16, in a colour of red, green and blue.
struct Shape {
  uint32_t colour;
  std::vector<Point> outline;
};

constexpr uint32_t kSteel = 0x37474F;
constexpr uint32_t kGround = 0x8D6E63;
constexpr uint32_t kSand = 0xE0B973;
constexpr uint32_t kOil = 0x2E7D32;
constexpr uint32_t kWater = 0x1E78C8;
constexpr uint32_t kSky = 0xEEF4F9;

std::vector<Point> Box(float left, float top, float right, float bottom) {
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

/// A line of some thickness.
std::vector<Point> Bar(Point from, Point to, float dx, float dy) {
  return {{from.x - dx, from.y - dy},
          {from.x + dx, from.y + dy},
          {to.x + dx, to.y + dy},
          {to.x - dx, to.y - dy}};
}

/// A derrick on its ground.
std::vector<Shape> WellShapes() {
  return {{kSteel, Bar({8, 1}, {3.5F, 13}, 0.75F, 0)},
          {kSteel, Bar({8, 1}, {12.5F, 13}, 0.75F, 0)},
          {kSteel, Box(6.3F, 4.5F, 9.7F, 5.6F)},
          {kSteel, Box(5, 8.2F, 11, 9.3F)},
          {kSteel, Bar({6.2F, 5}, {11.2F, 9}, 0.5F, 0)},
          {kSteel, Bar({5, 9}, {12, 13}, 0.6F, 0)},
          {kGround, Box(1, 13, 15, 15)},
          {kOil, Box(7.2F, 10, 8.8F, 15)}};
}

/// Three bars between two axes.
std::vector<Shape> VariableShapes() {
  return {{kSteel, Box(1.5F, 1, 2.7F, 14.5F)},
          {kSteel, Box(1.5F, 13.3F, 15, 14.5F)},
          {kWater, Box(4, 8.5F, 6.8F, 13.3F)},
          {kOil, Box(7.8F, 5.5F, 10.6F, 13.3F)},
          {kSand, Box(11.6F, 2.5F, 14.4F, 13.3F)}};
}

/// A cut through a reservoir: a dome of layers below a derrick.
std::vector<Shape> SimulatorShapes() {
  const auto dome = [](float side, float top) {
    return std::vector<Point>{{1, side},  {4.5F, top + (side - top) * 0.3F},
                              {8, top},   {11.5F, top + (side - top) * 0.3F},
                              {15, side}, {15, 15},
                              {1, 15}};
  };
  return {{kSteel, Box(0.5F, 0.5F, 15.5F, 15.5F)},
          {kSky, Box(1, 1, 15, 15)},
          {kGround, Box(1, 6, 15, 15)},
          {kSand, dome(10.6F, 7.8F)},
          {kOil, dome(12, 9.2F)},
          {kWater, dome(13.6F, 12)},
          {kSteel, Bar({8, 1.4F}, {6.2F, 6}, 0.3F, 0)},
          {kSteel, Bar({8, 1.4F}, {9.8F, 6}, 0.3F, 0)},
          {kSteel, Box(6.9F, 3.6F, 9.1F, 4.1F)},
          {kSteel, Box(7.75F, 1.4F, 8.25F, 11.2F)}};
}

std::vector<Shape> ShapesOf(Picture picture) {
  switch (picture) {
    case kWellPicture:
      return WellShapes();
    case kVariablePicture:
      return VariableShapes();
    case kSimulatorPicture:
      return SimulatorShapes();
  }
  return {};
}

bool Holds(const std::vector<Point>& outline, Point at) {
  bool isInside = false;
  for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
    const Point a = outline[i];
    const Point b = outline[j];
    if ((a.y > at.y) == (b.y > at.y)) continue;
    if (at.x < (b.x - a.x) * (at.y - a.y) / (b.y - a.y) + a.x) isInside = !isInside;
  }
  return isInside;
}

/// The topmost shape's colour, opaque; 0 where there is none.
uint32_t ColourAt(const std::vector<Shape>& shapes, Point at) {
  for (auto shape = shapes.rbegin(); shape != shapes.rend(); ++shape) {
    if (Holds(shape->outline, at)) return shape->colour | 0xFF000000U;
  }
  return 0;
}

uint32_t Channel(uint32_t pixel, int shift) { return (pixel >> shift) & 0xFF; }

/// The mean of the samples of one pixel.
uint32_t Blend(std::span<const uint32_t> samples) {
  uint32_t covered = 0;
  std::array<uint32_t, 3> sums = {};
  for (const uint32_t sample : samples) {
    if (sample == 0) continue;
    ++covered;
    for (size_t i = 0; i < sums.size(); ++i) sums[i] += Channel(sample, 8 * static_cast<int>(i));
  }
  if (covered == 0) return 0;
  uint32_t pixel = covered * 255 / static_cast<uint32_t>(samples.size()) << 24;
  for (size_t i = 0; i < sums.size(); ++i) pixel |= sums[i] / covered << (8 * i);
  return pixel;
}

}  // namespace

std::vector<uint32_t> PaintPicture(Picture picture, int width, int height) {
  constexpr int kMostPixels = 16384;
  constexpr int kSamples = 4;
  constexpr int kSampleCount = kSamples * kSamples;
  constexpr float kField = 16.0F;
  const std::vector<Shape> shapes = ShapesOf(picture);
  if (shapes.empty() || width <= 0 || height <= 0 || std::max(width, height) > kMostPixels) {
    return {};
  }
  const float stepX = kField / static_cast<float>(width * kSamples);
  const float stepY = kField / static_cast<float>(height * kSamples);
  std::vector<uint32_t> pixels;
  pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::array<uint32_t, kSampleCount> samples{};
      for (int i = 0; i < kSampleCount; ++i) {
        const int column = x * kSamples + i % kSamples;
        const int row = y * kSamples + i / kSamples;
        samples[static_cast<size_t>(i)] =
            ColourAt(shapes, {(static_cast<float>(column) + 0.5F) * stepX,
                              (static_cast<float>(row) + 0.5F) * stepY});
      }
      pixels.push_back(Blend(samples));
    }
  }
  return pixels;
}

}  // namespace gantry::platform
