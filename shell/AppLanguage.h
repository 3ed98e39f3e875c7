#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

/// A language of the user interface. Polish is the home language and the fallback.
enum class AppLanguage : int { pl, en };

inline constexpr std::array allAppLanguages{AppLanguage::pl, AppLanguage::en};

/// "pl" or "en", as it is stored.
[[nodiscard]] QString rawValue(AppLanguage language);
/// Exact match only.
[[nodiscard]] std::optional<AppLanguage> appLanguageFromRawValue(QStringView text);
/// The language's own name, the same in both languages.
[[nodiscard]] QString displayName(AppLanguage language);
