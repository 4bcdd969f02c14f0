// Rewriting a pattern into tokens, and matching by following all ways at once.
#include "frame/runtime/name_pattern.h"

#include <algorithm>

namespace Orvix {

namespace {

TextView WithoutTrailingDots(TextView pattern) { return pattern.substr(0, pattern.find_last_not_of(u'.') + 1); }

}  // namespace

NamePattern::NamePattern(TextView folded) {
  TextView pattern = WithoutTrailingDots(folded);
  const bool had_dots = pattern.size() < folded.size();
  const bool every = pattern == u"*.*";
  if (every) pattern = u"*";
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char16_t unit = pattern[i];
    const char16_t following = i + 1 < pattern.size() ? pattern[i + 1] : u'\0';
    const bool last = i + 1 == pattern.size();
    Kind kind = Kind::kUnit;
    if (unit == u'?') kind = Kind::kOne;
    if (unit == u'.' && (following == u'?' || following == u'*')) kind = Kind::kEndDot;
    if (unit == u'*') kind = following == u'.' || (last && had_dots && !every) ? Kind::kStar : Kind::kAny;
    tokens_.push_back({kind, unit});
  }
  // Most patterns are a run between plain texts: those are compared as texts.
  const auto is_plain = [](const Token& token) { return token.kind == Kind::kUnit; };
  const auto front = std::find_if_not(tokens_.begin(), tokens_.end(), is_plain);
  for (auto token = tokens_.begin(); token != front; ++token) front_.push_back(token->unit);
  tokens_.erase(tokens_.begin(), front);
  while (!tokens_.empty() && is_plain(tokens_.back())) {
    end_.push_back(tokens_.back().unit);
    tokens_.pop_back();
  }
  std::reverse(end_.begin(), end_.end());
  // A run up to the last dot, with ".txt" after it, is any run before ".txt".
  one_run_ =
      tokens_.size() == 1 && (tokens_[0].kind == Kind::kAny || (tokens_[0].kind == Kind::kStar && !end_.empty()));
}

bool NamePattern::Matches(TextView folded_name) {
  if (folded_name.size() < front_.size() + end_.size()) return false;
  if (!folded_name.starts_with(front_) || !folded_name.ends_with(end_)) return false;
  if (one_run_) return true;
  return MatchesRest(folded_name.substr(front_.size()));
}

bool NamePattern::MatchesRest(TextView name) {
  const std::size_t last_dot = name.rfind(u'.');
  const std::size_t count = tokens_.size() + end_.size();
  const auto token_at = [&](std::size_t i) {
    return i < tokens_.size() ? tokens_[i] : Token{Kind::kUnit, end_[i - tokens_.size()]};
  };
  now_.assign(count + 1, 0);
  now_[0] = 1;
  for (std::size_t at = 0;; ++at) {
    const bool ended = at == name.size();
    const char16_t unit = ended ? u'\0' : name[at];
    next_.assign(count + 1, 0);
    for (std::size_t i = 0; i < count; ++i) {
      if (now_[i] == 0) continue;
      const auto [kind, wanted] = token_at(i);
      bool nothing = false;  // the token may stand for nothing here
      bool stays = false;    // it takes the unit and may take more
      bool takes = false;    // it takes the unit and is done
      switch (kind) {
        case Kind::kUnit:
          takes = unit == wanted;
          break;
        case Kind::kAny:
          nothing = true;
          stays = true;
          break;
        case Kind::kStar:
          nothing = true;
          stays = last_dot == TextView::npos || at != last_dot;
          takes = !stays;
          break;
        case Kind::kOne:
          nothing = ended || unit == u'.';
          takes = unit != u'.' || at + 1 == name.size();
          break;
        case Kind::kEndDot:
          nothing = ended;
          takes = unit == u'.';
          break;
      }
      if (nothing) now_[i + 1] = 1;
      if (ended) continue;
      if (stays) next_[i] = 1;
      if (takes) next_[i + 1] = 1;
    }
    if (ended) return now_[count] != 0;
    now_.swap(next_);
  }
}

}  // namespace Orvix
