#pragma once

/// @file
/// Results on their way from one process to another.

#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace quilon {

/// Bytes of a result, for a process of the same program on a machine of the same kind. A type takes part by a function
/// beside it, which writes and reads alike: template <typename Parcel> void Travel(Parcel& parcel, T& value), which
/// calls parcel(value.member)... Numbers, enumerations, strings and the usual containers know the way by themselves.
class ParcelWriter
{
public:
  static constexpr bool kReads = false;

  template <typename... Values>
  void operator()(Values&... values)
  {
    (Put(values), ...);
  }

  std::string Take() noexcept { return std::move(bytes_); }

private:
  template <typename T>
  void Put(T& value)
  {
    if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
      PutBytes(&value, sizeof value);
    else
      Travel(*this, value);
  }
  void Put(std::string& text)
  {
    PutCount(text.size());
    PutBytes(text.data(), text.size());
  }
  template <typename T>
  void Put(std::vector<T>& values)
  {
    PutCount(values.size());
    if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>)
      PutBytes(values.data(), values.size() * sizeof(T));
    else
      for (T& value : values) Put(value);
  }
  template <typename T, std::size_t N>
  void Put(std::array<T, N>& values)
  {
    for (T& value : values) Put(value);
  }
  template <typename T>
  void Put(std::set<T>& values)
  {
    PutCount(values.size());
    for (T value : values) Put(value);
  }
  template <typename T>
  void Put(std::optional<T>& value)
  {
    PutCount(value ? 1 : 0);
    if (value) Put(*value);
  }
  template <typename Key, typename T>
  void Put(std::map<Key, T>& values)
  {
    PutCount(values.size());
    for (auto& [key, value] : values) {
      Key own = key;
      Put(own);
      Put(value);
    }
  }
  template <typename... Types>
  void Put(std::variant<Types...>& value)
  {
    PutCount(value.index());
    std::visit([this](auto& held) { this->Put(held); }, value);
  }
  void Put(std::monostate) {}
  template <typename A, typename B>
  void Put(std::pair<A, B>& pair)
  {
    Put(pair.first);
    Put(pair.second);
  }

  void PutCount(std::size_t count) { PutBytes(&count, sizeof count); }
  void PutBytes(const void* bytes, std::size_t count)
  {
    if (count > 0) bytes_.append(static_cast<const char*>(bytes), count);
  }

  std::string bytes_;
};

/// Reads what a ParcelWriter wrote.
class ParcelReader
{
public:
  static constexpr bool kReads = true;

  /// @param bytes borrowed
  explicit ParcelReader(std::string_view bytes) noexcept : bytes_(bytes) {}

  /// @throws std::runtime_error where the bytes end too early
  template <typename... Values>
  void operator()(Values&... values)
  {
    (Get(values), ...);
  }

  bool IsAtEnd() const noexcept { return bytes_.empty(); }

private:
  template <typename T>
  void Get(T& value)
  {
    if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
      GetBytes(&value, sizeof value);
    else
      Travel(*this, value);
  }
  void Get(std::string& text)
  {
    text.resize(GetCount(1));
    GetBytes(text.data(), text.size());
  }
  template <typename T>
  void Get(std::vector<T>& values)
  {
    values.clear();
    if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
      values.resize(GetCount(sizeof(T)));
      GetBytes(values.data(), values.size() * sizeof(T));
    } else {
      for (std::size_t count = GetCount(0); count > 0; --count) Get(values.emplace_back());
    }
  }
  template <typename T, std::size_t N>
  void Get(std::array<T, N>& values)
  {
    for (T& value : values) Get(value);
  }
  template <typename T>
  void Get(std::set<T>& values)
  {
    values.clear();
    for (std::size_t count = GetCount(0); count > 0; --count) {
      T value{};
      Get(value);
      values.insert(values.end(), std::move(value));
    }
  }
  template <typename T>
  void Get(std::optional<T>& value)
  {
    value.reset();
    if (GetCount(0) != 0) Get(value.emplace());
  }
  template <typename Key, typename T>
  void Get(std::map<Key, T>& values)
  {
    values.clear();
    for (std::size_t count = GetCount(0); count > 0; --count) {
      Key key;
      Get(key);
      Get(values[key]);
    }
  }
  template <typename... Types>
  void Get(std::variant<Types...>& value)
  {
    const std::size_t index = GetCount(0);
    std::size_t       next  = 0;
    (static_cast<void>(next++ == index && (Get(value.template emplace<Types>()), true)), ...);
    if (index >= sizeof...(Types)) FailCut();
  }
  void Get(std::monostate) {}
  template <typename A, typename B>
  void Get(std::pair<A, B>& pair)
  {
    Get(pair.first);
    Get(pair.second);
  }

  /// @param bytes of each of them, at least
  std::size_t GetCount(std::size_t bytes)
  {
    std::size_t count = 0;
    GetBytes(&count, sizeof count);
    if (bytes > 0 && count > bytes_.size() / bytes) FailCut();
    return count;
  }
  void GetBytes(void* bytes, std::size_t count)
  {
    if (count > bytes_.size()) FailCut();
    if (count > 0) std::memcpy(bytes, bytes_.data(), count);
    bytes_.remove_prefix(count);
  }
  [[noreturn]] static void FailCut() { throw std::runtime_error("a result of another process is cut"); }

  std::string_view bytes_;
};

}  // namespace quilon
