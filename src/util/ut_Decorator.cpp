#include "ut_Decorator.h"

namespace utility {

const stringtoken Decorator::m_toToken[36] = {1200, 6911, 6912, 6913, 6914, 1867, 6915, 6916, 6917, 6918, 6919, 6920,
                                              6921, 6922, 6923, 6924, 6925, 6926, 6927, 6928, 6929, 6930, 6931, 6932,
                                              6933, 6934, 6935, 6936, 6937, 6938, 6939, 6940, 6941, 6942, 6943, 6944};

Decorator::Decorator() = default;

Decorator::~Decorator() = default;

void Decorator::setDecoration(DecorationType) {}

void Decorator::setDecoration(DecorationType, PutStream*) {}

stringtoken Decorator::toToken(DecorationType type) {
    const stringtoken undefined = 1153;
    return type >= Normal && type <= Cyan ? m_toToken[type] : undefined;
}

} // namespace utility
