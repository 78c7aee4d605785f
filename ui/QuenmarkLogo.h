#pragma once

#include <QImage>
#include <QStringList>
#include <QWidget>

#include <optional>

namespace orvalen {

/// The maker's logo, the first of its files that holds a picture; none if none does.
[[nodiscard]] std::optional<QImage> loadQuenmarkLogo();

/// The one built in, then the one of the source tree that the program runs in.
[[nodiscard]] QStringList quenmarkLogoFiles();

/// The first of these files that holds a picture.
[[nodiscard]] std::optional<QImage> firstPicture(const QStringList &files);

/// The logo as a square, or a shield where there is none.
[[nodiscard]] QWidget *logoView(const std::optional<QImage> &logo, int side);

} // namespace orvalen
