#include "export/VtuExport.h"

#include <bit>
#include <functional>
#include <ostream>
#include <span>

#include "export/GridSource.h"
#include "text/Format.h"
#include "text/XmlText.h"

namespace quilon {

namespace {

/// Numbers behind the XML.
struct Appended
{
  std::uint64_t                               bytes;
  std::function<std::span<const std::byte>()> read;
};

const char* TypeName(GridSource::Type type)
{
  switch (type) {
    case GridSource::Type::UInt8:
      return "UInt8";
    case GridSource::Type::Int32:
      return "Int32";
    case GridSource::Type::Float64:
      break;
  }
  return "Float64";
}

std::size_t BytesOf(GridSource::Type type)
{
  return type == GridSource::Type::UInt8 ? 1 : type == GridSource::Type::Int32 ? 4 : 8;
}

template <typename T>
std::span<const std::byte> Bytes(const std::vector<T>& values)
{
  return std::as_bytes(std::span(values));
}

class VtuWriter
{
public:
  VtuWriter(GridSource& source, std::size_t step) : source_(source), step_(step) {}

  void Run(std::ostream& out, std::uint64_t largestNarrow)
  {
    std::string text = "  <UnstructuredGrid>\n";
    if (source_.Plan().areTimesKnown && !source_.Plan().times.empty())
      text +=
          "    <FieldData>\n      <DataArray type=\"Float64\" Name=\"TimeValue\" NumberOfTuples=\"1\" "
          "format=\"ascii\">" +
          FormatNumber(source_.Plan().times[step_]) + "</DataArray>\n    </FieldData>\n";
    text += "    <Piece NumberOfPoints=\"" + std::to_string(source_.NumPoints()) + "\" NumberOfCells=\"" +
            std::to_string(source_.NumCells()) + "\">\n";
    // One after the other: each appends its arrays.
    text += Mesh();
    text += Arrays(false);
    text += Arrays(true);
    text += "    </Piece>\n  </UnstructuredGrid>\n";

    // The sizes before each array count as bytes of the file, too.
    bool isWide = false;
    for (const Appended& array : appended_) isWide = isWide || array.bytes > largestNarrow;
    const std::uint64_t headBytes = isWide ? 8 : 4;
    std::uint64_t       offset    = 0;
    for (const Appended& array : appended_) {
      const std::size_t place = text.find(kOffset);
      text.replace(place, kOffset.size(), std::to_string(offset));
      offset += headBytes + array.bytes;
    }

    out << "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\""
        << (std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian") << "\" header_type=\""
        << (isWide ? "UInt64" : "UInt32") << "\">\n"
        << text << "  <AppendedData encoding=\"raw\">\n   _";
    for (const Appended& array : appended_) {
      const std::span<const std::byte> bytes  = array.read();
      const auto                       narrow = static_cast<std::uint32_t>(bytes.size());
      const std::uint64_t              wide   = bytes.size();
      out.write(isWide ? reinterpret_cast<const char*>(&wide) : reinterpret_cast<const char*>(&narrow),
                static_cast<std::streamsize>(headBytes));
      out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    out << "\n  </AppendedData>\n</VTKFile>\n";
  }

private:
  /// Stands for an offset until all arrays are known; no name holds a control character.
  static constexpr std::string_view kOffset = "\x01";

  std::string Append(const std::string& attributes, std::uint64_t bytes,
                     std::function<std::span<const std::byte>()> read)
  {
    appended_.push_back({bytes, std::move(read)});
    return "        <DataArray " + attributes + " format=\"appended\" offset=\"" + std::string(kOffset) + "\"/>\n";
  }

  std::string Mesh()
  {
    const std::uint64_t numCells = source_.NumCells();
    std::string         text     = "      <Points>\n";
    text += Append("type=\"Float64\" Name=\"Points\" NumberOfComponents=\"3\"", 24 * source_.NumPoints(), [this] {
      points_ = source_.Points();
      return Bytes(points_);
    });
    text += "      </Points>\n      <Cells>\n";
    text += Append("type=\"Int64\" Name=\"connectivity\"", 8 * source_.NumConnectivity(),
                   [this] { return Bytes(source_.Connectivity()); });
    // VTK's XML leaves the first offset out, which is zero.
    text += Append("type=\"Int64\" Name=\"offsets\"", 8 * numCells,
                   [this] { return Bytes(source_.Offsets()).subspan(sizeof(std::int64_t)); });
    text += Append("type=\"UInt8\" Name=\"types\"", numCells, [this] { return Bytes(source_.CellTypes()); });
    return text + "      </Cells>\n";
  }

  std::string Arrays(bool ofCells)
  {
    const std::string tag  = ofCells ? "CellData" : "PointData";
    const std::size_t rows = ofCells ? source_.NumCells() : source_.NumPoints();
    std::string       text = "      <" + tag + ">\n";
    for (std::size_t i = 0; i < source_.Arrays().size(); ++i) {
      const GridSource::Array& array = source_.Arrays()[i];
      if (array.ofCells != ofCells) continue;
      const std::size_t numValues = array.components.size();
      std::string attributes = "type=\"" + std::string(TypeName(array.type)) + "\" Name=\"" + XmlText(array.name) + '"';
      if (numValues > 1) {
        attributes += " NumberOfComponents=\"" + std::to_string(numValues) + '"';
        for (std::size_t c = 0; c < numValues; ++c)
          attributes += " ComponentName" + std::to_string(c) + "=\"" + XmlText(array.components[c]) + '"';
      }
      text += Append(attributes, rows * numValues * BytesOf(array.type), [this, i] { return source_.Read(i, step_); });
    }
    return text + "      </" + tag + ">\n";
  }

  GridSource&           source_;
  std::size_t           step_;
  std::vector<Appended> appended_;
  std::vector<double>   points_;
};

}  // namespace

void WriteVtu(GridSource& source, std::size_t step, std::ostream& out, std::uint64_t largestNarrow)
{
  VtuWriter(source, step).Run(out, largestNarrow);
}

std::string PvdText(const std::vector<double>& times, const std::vector<std::filesystem::path>& files)
{
  std::string text = "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n  <Collection>\n";
  for (std::size_t i = 0; i < files.size(); ++i)
    text += "    <DataSet timestep=\"" + FormatNumber(times[i]) + "\" file=\"" + XmlText(files[i].string()) + "\"/>\n";
  return text + "  </Collection>\n</VTKFile>\n";
}

}  // namespace quilon
