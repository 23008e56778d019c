package vynxfer;

/** What the native library decided for this process. */
public final class VynXfer {
    private VynXfer() {}

    /**
     * Whether names are stored in the fallback character set, ISO 8859-1. So it is wherever the locale names no
     * character set that the library knows: the environment variable {@code LANG} when the library was loaded or, where
     * that is not set, the locale that the virtual machine took. {@code LC_ALL} is not read.
     *
     * @return true for ISO 8859-1, false for any other set
     * @throws UnsatisfiedLinkError if the native library is not there or has no bridge to Java; the message says which,
     *     and where it was looked for
     */
    public static boolean isVynDefaultLocale() {
        NativeLibrary.require();
        return isVynDefaultLocale(null);
    }

    // The argument tells the two methods apart, and the native code, whose symbol is that of the name alone, ignores it.
    static native boolean isVynDefaultLocale(Object unused);
}
