#include "LogcatPrefix.h"

#include <charconv>
#include <cstring>

#include "TextUtil.h"

namespace metatext {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr std::string_view kColourEnd = "\x1B[0m";

bool IsPriority(char c) { return c != '\0' && strchr("VDIWEFAS", c) != nullptr; }

// `\x1B[<n>m` or `\x1B[38;5;<n>m`, which `-v color` puts before the prefix.
std::string_view WithoutColourStart(std::string_view line) {
  if (!StartsWith(line, "\x1B[")) return line;
  size_t i = 2;
  while (i < line.size() && (IsDigit(line[i]) || line[i] == ';')) ++i;
  return i < line.size() && line[i] == 'm' ? line.substr(i + 1) : line;
}

std::string_view WithoutColourEnd(std::string_view message) {
  return EndsWith(message, kColourEnd) ? message.substr(0, message.size() - kColourEnd.size()) : message;
}

// Matches `pattern` at `pos`: 'D' is any digit, other characters are
// themselves. The position after it, or kNone.
size_t Expect(std::string_view line, size_t pos, std::string_view pattern) {
  if (line.size() - pos < pattern.size()) return kNone;
  for (size_t i = 0; i < pattern.size(); ++i) {
    const char c = line[pos + i];
    if (pattern[i] == 'D' ? !IsDigit(c) : c != pattern[i]) return kNone;
  }
  return pos + pattern.size();
}

size_t Digits(std::string_view line, size_t pos) {
  size_t end = pos;
  while (end < line.size() && IsDigit(line[end])) ++end;
  return end - pos;
}

// The time logcat prints: "%m-%d %H:%M:%S", with `year` "%Y-%m-%d ...",
// with `epoch` or `monotonic` right-aligned seconds; then milliseconds,
// microseconds or nanoseconds, and with `zone` " %z". The end, or kNone.
size_t SkipTime(std::string_view line, size_t pos) {
  while (pos < line.size() && line[pos] == ' ') ++pos;
  const size_t digits = Digits(line, pos);
  if (digits == 0) return kNone;
  if (pos + digits < line.size() && line[pos + digits] == '-')
    pos = Expect(line, pos, digits == 2 ? "DD-DD DD:DD:DD." : "DDDD-DD-DD DD:DD:DD.");
  else
    pos = Expect(line, pos + digits, ".");
  if (pos == kNone) return kNone;
  const size_t fraction = Digits(line, pos);
  if (fraction != 3 && fraction != 6 && fraction != 9) return kNone;
  pos += fraction;
  for (const char* zone : {" +DDDD ", " -DDDD "})
    if (Expect(line, pos, zone) != kNone) return pos + 6;
  return pos;
}

bool ToNumber(std::string_view text, int* value) {
  text = Trim(text);
  const auto result = std::from_chars(text.data(), text.data() + text.size(), *value);
  return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// The ':'-separated fields logcat prints in parentheses or brackets:
// [uid:] pid [: tid]. The uid may be an account name. Their number.
size_t SplitFields(std::string_view text, std::string_view fields[3]) {
  size_t count = 0;
  while (count < 3) {
    const size_t colon = text.find(':');
    fields[count++] = Trim(text.substr(0, colon));
    if (colon == kNone) return count;
    text.remove_prefix(colon + 1);
  }
  return 4;  // too many
}

// "pid" or "uid: pid" in brief and time formats.
bool ParsePidGroup(std::string_view group, int* pid) {
  std::string_view fields[3];
  const size_t count = SplitFields(group, fields);
  return count <= 2 && ToNumber(fields[count - 1], pid);
}

// The message after "TAG: " at `tagStart`: the tag is padded to 8 columns.
bool SplitTagColon(std::string_view line, size_t tagStart, LogcatLine* out) {
  size_t colon = line.find(':', tagStart);
  while (colon != kNone && colon + 1 < line.size() && line[colon + 1] != ' ')
    colon = line.find(':', colon + 1);
  if (colon == kNone) return false;
  out->tag = Trim(line.substr(tagStart, colon - tagStart));
  out->message = colon + 1 < line.size() ? line.substr(colon + 2) : std::string_view();
  out->logcat = true;
  return true;
}

// "P/TAG(pid): " (brief, and time after its time) or "P/TAG: " (tag).
bool SplitSlashForm(std::string_view line, size_t pos, bool tagFormAllowed, LogcatLine* out) {
  if (pos + 1 >= line.size() || !IsPriority(line[pos]) || line[pos + 1] != '/') return false;
  const size_t tagStart = pos + 2;
  const size_t paren = line.find('(', tagStart), colon = line.find(':', tagStart);
  if (paren != kNone && paren > tagStart && (colon == kNone || paren < colon)) {
    const size_t close = line.find(')', paren);
    int pid = 0;
    if (close == kNone || Expect(line, close, "):") == kNone ||
        !ParsePidGroup(line.substr(paren + 1, close - paren - 1), &pid))
      return false;
    out->tag = Trim(line.substr(tagStart, paren - tagStart));
    out->pid = pid;
    out->message = close + 2 < line.size() ? line.substr(close + 3) : std::string_view();
    out->logcat = true;
    return true;
  }
  return tagFormAllowed && SplitTagColon(line, tagStart, out);
}

// threadtime after its time: "[uid] pid tid P TAG: ".
bool SplitThreadtime(std::string_view line, size_t pos, LogcatLine* out) {
  std::string_view words[4];
  size_t ends[4] = {};
  for (size_t i = 0; i < 4; ++i) {
    while (pos < line.size() && line[pos] == ' ') ++pos;
    const size_t start = pos;
    while (pos < line.size() && !IsBlank(line[pos])) ++pos;
    words[i] = line.substr(start, pos - start);
    ends[i] = pos;
  }
  const auto isPriority = [&](size_t i) { return words[i].size() == 1 && IsPriority(words[i][0]); };
  const size_t priority = isPriority(2) ? 2 : isPriority(3) ? 3 : kNone;
  if (priority == kNone || !ToNumber(words[priority - 2], &out->pid) ||
      !ToNumber(words[priority - 1], &out->tid))
    return false;
  return ends[priority] < line.size() && SplitTagColon(line, ends[priority] + 1, out);
}

bool SplitTimed(std::string_view line, LogcatLine* out) {
  const size_t time = SkipTime(line, 0);
  if (time == kNone || time >= line.size() || line[time] != ' ') return false;
  return SplitSlashForm(line, time + 1, false, out) || SplitThreadtime(line, time + 1, out);
}

// "P(pid) message  (TAG)" (process) or "P(pid:tid) message" (thread), each
// with an optional uid field first.
bool SplitParenForm(std::string_view line, LogcatLine* out) {
  if (line.size() < 4 || !IsPriority(line[0]) || line[1] != '(') return false;
  const size_t close = line.find(')');
  if (close == kNone || close + 1 >= line.size() || line[close + 1] != ' ') return false;
  std::string_view fields[3];
  const size_t count = SplitFields(line.substr(2, close - 2), fields);
  std::string_view message = line.substr(close + 2);
  const size_t suffix = message.rfind("  (");
  const bool process = EndsWith(message, ")") && suffix != kNone && (count == 1 || count == 2);
  if (count > 3 || !ToNumber(fields[count - 1], process ? &out->pid : &out->tid)) return false;
  if (process) {
    out->tag = message.substr(suffix + 3, message.size() - suffix - 4);
    message = message.substr(0, suffix);
  } else if (count < 2 || !ToNumber(fields[count - 2], &out->pid)) {
    return false;
  }
  out->message = message;
  out->logcat = true;
  return true;
}

// `-v long`: "[ TIME [uid:] pid: tid P/TAG ]" on a line of its own.
bool SplitLongHeader(std::string_view line, LogcatLine* out) {
  if (!StartsWith(line, "[ ") || !EndsWith(line, "]")) return false;
  const size_t time = SkipTime(line, 2);
  if (time == kNone) return false;
  size_t slash = line.find('/', time);
  while (slash != kNone && !(slash >= 2 && line[slash - 2] == ' ' && IsPriority(line[slash - 1])))
    slash = line.find('/', slash + 1);
  if (slash == kNone) return false;
  std::string_view fields[3];
  const size_t count = SplitFields(line.substr(time, slash - 2 - time), fields);
  if (count < 2 || count > 3 || !ToNumber(fields[count - 2], &out->pid) ||
      !ToNumber(fields[count - 1], &out->tid))
    return false;
  out->tag = Trim(line.substr(slash + 1, line.size() - 2 - slash));
  out->logcat = out->header = true;
  return true;
}

}  // namespace

LogcatLine LogcatSplitter::Split(std::string_view line) {
  line = WithoutColourStart(line);
  LogcatLine out;
  if (longHeader_) {
    longHeader_ = false;
    out.logcat = true;
    out.tag = longTag_;
    out.pid = longPid_;
    out.tid = longTid_;
    out.message = WithoutColourEnd(line);
    return out;
  }
  if (line.empty()) {
    out.message = line;
    return out;
  }
  const char first = line[0];
  bool split = false;
  if (IsDigit(first) || first == ' ')
    split = SplitTimed(line, &out);
  else if (first == '[')
    split = SplitLongHeader(line, &out);
  else if (line.size() > 1 && line[1] == '/')
    split = SplitSlashForm(line, 0, true, &out);
  else if (line.size() > 1 && line[1] == '(')
    split = SplitParenForm(line, &out);
  if (!split) return LogcatLine{false, false, {}, -1, -1, line};
  if (out.header) {
    longHeader_ = true;
    longTag_.assign(out.tag.data(), out.tag.size());
    longPid_ = out.pid;
    longTid_ = out.tid;
  }
  out.message = WithoutColourEnd(out.message);
  return out;
}

}  // namespace metatext
