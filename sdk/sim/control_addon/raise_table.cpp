#include "raise_table.h"

#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace test_control {

namespace {

// Each parameter type of a callback is converted on the script thread into
// a value the engine thread can own (`hold`), and turned into the argument
// only when the call is made (`use`): JavaScript values never cross threads,
// and records that count their instances are made where the engine made them.
template <class P>
struct Tag {};

template <class P>
requires(std::is_enum_v<P> || std::is_same_v<P, int>) int hold(Tag<P>, const JsArgs& a, size_t i) { return a.i32(i); }
template <class P>
requires(std::is_enum_v<P> || std::is_same_v<P, int>) P use(Tag<P>, int held) { return static_cast<P>(held); }

bool hold(Tag<bool>, const JsArgs& a, size_t i) { return a.boolean(i); }
std::string hold(Tag<const std::string&>, const JsArgs& a, size_t i) { return a.str(i); }
// A null char pointer where script passed null or undefined.
std::optional<std::string> hold(Tag<const char*>, const JsArgs& a, size_t i) { return a.cstr(i); }
const char* use(Tag<const char*>, const std::optional<std::string>& s) { return s ? s->c_str() : nullptr; }

std::vector<std::string> hold(Tag<const rtc::StringVector&>, const JsArgs& a, size_t i) {
  return toStrings(a.env(), a.at(i));
}
// A StringVector cannot be copied or moved, so it is built in the temporary
// that lives for the call.
struct StringsArg {
  explicit StringsArg(const std::vector<std::string>& items) {
    for (const auto& s : items) vector.add(s);
  }
  operator const rtc::StringVector&() const { return vector; }
  rtc::StringVector vector;
};
StringsArg use(Tag<const rtc::StringVector&>, const std::vector<std::string>& items) { return StringsArg(items); }

// Any value but null or undefined stands for the loopback engine's channel.
rtc::MediaChannel* hold(Tag<rtc::MediaChannel*>, const JsArgs& a, size_t i) {
  return a.isNullish(i) ? nullptr : control::loopbackChannel();
}

std::vector<rtc::VolumeInfo> hold(Tag<const std::vector<rtc::VolumeInfo>&>, const JsArgs& a, size_t i) {
  return toVolumes(a.env(), a.at(i));
}
rtc::EchoCheckResult hold(Tag<const rtc::EchoCheckResult&>, const JsArgs& a, size_t i) {
  return toEchoResult(a.env(), a.at(i));
}
rtc::MediaChannelErrInfo hold(Tag<const rtc::MediaChannelErrInfo&>, const JsArgs& a, size_t i) {
  return toErrInfo(a.env(), a.at(i));
}
std::map<std::string, std::string> hold(Tag<const std::map<std::string, std::string>&>, const JsArgs& a, size_t i) {
  return toStringMap(a.env(), a.at(i));
}

// The statistics' records point into their user ids; both travel together.
struct HeldStats {
  std::vector<std::string> ids;
  rtc::NetworkStats stats;
};
std::shared_ptr<HeldStats> hold(Tag<const rtc::NetworkStats&>, const JsArgs& a, size_t i) {
  auto held = std::make_shared<HeldStats>();
  held->stats = toNetworkStats(a.env(), a.at(i), held->ids);
  return held;
}
const rtc::NetworkStats& use(Tag<const rtc::NetworkStats&>, const std::shared_ptr<HeldStats>& held) {
  return held->stats;
}

// What script passes for each parameter type, named for the checks the
// testing entry makes before raising: the conversions above coerce.
template <class P>
requires(std::is_enum_v<P> || std::is_same_v<P, int>) const char* kindOf(Tag<P>) { return "integer"; }
const char* kindOf(Tag<bool>) { return "boolean"; }
const char* kindOf(Tag<const std::string&>) { return "string"; }
const char* kindOf(Tag<const char*>) { return "string|null"; }
const char* kindOf(Tag<const rtc::StringVector&>) { return "string[]"; }
const char* kindOf(Tag<rtc::MediaChannel*>) { return "channel"; }
const char* kindOf(Tag<const std::vector<rtc::VolumeInfo>&>) { return "VolumeInfo[]"; }
const char* kindOf(Tag<const rtc::EchoCheckResult&>) { return "EchoCheckResult"; }
const char* kindOf(Tag<const rtc::MediaChannelErrInfo&>) { return "MediaChannelErrInfo"; }
const char* kindOf(Tag<const std::map<std::string, std::string>&>) { return "Record<string,string>"; }
const char* kindOf(Tag<const rtc::NetworkStats&>) { return "NetworkStats"; }

// Every other held value is the argument itself.
template <class P, class Held>
const Held& use(Tag<P>, const Held& held) {
  return held;
}

template <class Face, class... P, size_t... I>
Raise bindCall(void (Face::*member)(P...), const JsArgs& a, std::index_sequence<I...>) {
  // Braces convert the arguments left to right, as script wrote them.
  std::tuple<decltype(hold(Tag<P>{}, a, I))...> held{hold(Tag<P>{}, a, I)...};
  return [member, held](const control::Registered& r) {
    (void)held;  // a member without parameters reads nothing from it
    Face* face = r.get<Face>();
    if (face == nullptr) return false;
    (face->*member)(use(Tag<P>{}, std::get<I>(held))...);
    return true;
  };
}

// The raise of one listener member, its arguments taken in declared order.
template <auto Member>
Raise raiseOf(const JsArgs& a) {
  return [&]<class Face, class... P>(void (Face::*member)(P...)) {
    return bindCall(member, a, std::index_sequence_for<P...>{});
  }(Member);
}

template <auto Member>
std::vector<std::string> kindsOf() {
  return [&]<class Face, class... P>(void (Face::*)(P...)) {
    return std::vector<std::string>{kindOf(Tag<P>{})...};
  }(Member);
}

struct Entry {
  Raise (*make)(const JsArgs&);
  std::vector<std::string> (*kinds)();
};

// One entry per listener member script may raise, generated from the
// interface description's listener classes: its script name, and the member
// chosen by its described parameter types (which pick the conversions).
// `params` is a parameter list, parentheses included.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define ORVA_RAISE(name, Face, member, params)                 \
  {name,                                                       \
   {raiseOf<static_cast<void(Face::*) params>(&Face::member)>, \
    kindsOf<static_cast<void(Face::*) params>(&Face::member)>}},
// NOLINTEND(bugprone-macro-parentheses)

const std::map<std::string, Entry>& table() {
  static const auto* const entries = new std::map<std::string, Entry>{
#include "raise_entries.inc"
  };
  return *entries;
}
#undef ORVA_RAISE

}  // namespace

Raise findRaise(const std::string& face, const std::string& method, const JsArgs& args) {
  auto it = table().find(face + "." + method);
  return it != table().end() ? it->second.make(args) : Raise();
}

std::vector<std::pair<std::string, std::vector<std::string>>> raiseSignatures() {
  std::vector<std::pair<std::string, std::vector<std::string>>> signatures;
  for (const auto& [name, entry] : table()) signatures.emplace_back(name, entry.kinds());
  return signatures;
}

}  // namespace test_control
