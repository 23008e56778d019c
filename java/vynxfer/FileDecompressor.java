package vynxfer;

/** Names of files that are about to be written to the local file system. */
public final class FileDecompressor {
    private FileDecompressor() {}

    /**
     * The name as the local file system will store it, in the character set of the process's locale (see
     * {@link VynXfer#isVynDefaultLocale}; ISO 8859-1 where it names no set that the library knows).
     *
     * <p>A character that the set can't hold is unmappable and takes its text form: {@code "U+XXXX"}, four upper-case
     * hexadecimal digits for each of its UTF-16 units. Where the set is ISO 8859-1, U+65E5 becomes the six characters
     * {@code "U+65E5"}, and a character outside the Basic Multilingual Plane takes two text forms. Only these names are
     * changed:
     *
     * <ul>
     *   <li>names with an unmappable character, as said;
     *   <li>names too long: cut behind the last whole character or text form that fits 4095 bytes, both in the local
     *       set and then in UTF-8;
     *   <li>names with U+0000: they end before it;
     *   <li>names with half a surrogate pair, unmappable but for a low half in UTF-8. Behind a high half UTF-8 drops the
     *       next unit; in GB18030 the name ends before it;
     *   <li>names with a character outside the Basic Multilingual Plane where the set can hold it. In UTF-8 the result
     *       is the bytes of the whole name read as ISO 8859-1; in GB18030 the Java virtual machine gets four-byte UTF-8,
     *       which is not its own form, and what it makes of that is not specified.
     * </ul>
     *
     * @param name the name, any text; may be empty or null
     * @return the stored name; {@code name} itself, the same object, if it is null, if nothing is left of it (it is
     *     empty or its first character ends it), or if the library runs out of memory
     * @throws UnsatisfiedLinkError if the native library is not there or has no bridge to Java; the message says which,
     *     and where it was looked for
     */
    public static String utf16ToLocal(String name) {
        NativeLibrary.require();
        return name == null ? null : utf16ToLocal((CharSequence) name);
    }

    // Takes a String only, never null: a virtual machine need not survive a null string, and the native code does not
    // look. The wider type tells the two methods apart; the native symbol is that of the name alone.
    private static native String utf16ToLocal(CharSequence name);
}
