package vynxfer;

/** What the native library decided for this process. */
public final class VynXfer {
    static {
        NativeLibrary.load();
    }

    private VynXfer() {}

    /**
     * Whether names are stored in the fallback character set, ISO 8859-1. So it is wherever the locale, the environment
     * variable {@code LANG} when the library was loaded, names no character set that the library knows.
     *
     * @return true for ISO 8859-1, false for any other set
     */
    public static native boolean isVynDefaultLocale();

    /** Apart, so that each class that needs the library says by itself why it can't be loaded. */
    static final class NativeLibrary {
        private static final String NAME = "vynulib64";

        private NativeLibrary() {}

        /** Loads the library from {@code java.library.path}; once it is there, does nothing. */
        static void load() {
            try {
                System.loadLibrary(NAME);
            } catch (UnsatisfiedLinkError reason) {
                UnsatisfiedLinkError error = new UnsatisfiedLinkError("cannot load " + System.mapLibraryName(NAME)
                        + " from java.library.path (" + System.getProperty("java.library.path") + "): "
                        + reason.getMessage());
                error.initCause(reason);
                throw error;
            }
        }
    }
}
