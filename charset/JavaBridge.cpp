// What the Java classes of package vynxfer call. Of the environment only GetStringUTFChars, ReleaseStringUTFChars and
// NewStringUTF are used.

#include <vynulib/VynCharSet.h>
#include <vynulib/VynCharSetConverter.h>

#include <jni.h>

namespace {

constexpr int nameSize = 4096; // bytes of a name in a buffer, terminator included

} // namespace

/// Whether the default set is ISO 8859-1, as it is wherever the locale names no known set.
extern "C" JNIEXPORT jboolean JNICALL Java_vynxfer_VynXfer_isVynDefaultLocale(JNIEnv*, jclass) {
    bool const isLatin1 =
        VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) == VynCharSetConverter::getConverter(VYNCS_ISO_8859_1);
    return isLatin1 ? JNI_TRUE : JNI_FALSE;
}

/// The name as the local file system will store it: what the default set can't hold is spelled "U+XXXX", one for each
/// UTF-16 unit. A name that comes to nothing in the default set is returned itself, and so is one whose bytes the
/// environment does not hand out: what it raised stays pending. Null when `NewStringUTF` raised something.
///
/// The environment's modified UTF-8 is read as UTF-8. Both are lenient enough for each other: the two bytes of U+0000
/// end the name, and each half of a supplementary character is a unit. A name that does not fit is cut at a character.
extern "C" JNIEXPORT jstring JNICALL Java_vynxfer_FileDecompressor_utf16ToLocal(JNIEnv* env, jclass, jstring name) {
    char const* const modifiedUtf8 = env->GetStringUTFChars(name, nullptr);
    if (!modifiedUtf8)
        return name;

    char local[nameSize];
    unsigned char utf8[nameSize];
    unsigned long const localLength =
        UTF8ToLocalPath(local, reinterpret_cast<unsigned char const*>(modifiedUtf8), nameSize);
    unsigned long const utf8Length = localLength != 0 ? LocalToUTF8(utf8, local, nameSize, VYNCS_OS_DEFAULT) : 0;
    env->ReleaseStringUTFChars(name, modifiedUtf8);

    if (localLength == 0)
        return name;
    return env->NewStringUTF(utf8Length != 0 ? reinterpret_cast<char const*>(utf8) : local);
}
