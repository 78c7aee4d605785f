#pragma once

#include <string_view>

#import <Foundation/Foundation.h>

namespace orvalen {

/// Objective-C's string of a text in UTF-8; nil where it is none.
inline NSString *foundationString(std::string_view utf8)
{
    return [[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding];
}

} // namespace orvalen
