/* The numbers of errors. A member that fails returns 0x800A0000 plus the number (kOxNoSourceFiles
 * as it is); OxErrorNumber gives it back. C and C++. */
#ifndef ORVIX_ERRORS_H
#define ORVIX_ERRORS_H

enum {
  /* The library's own */
  kOxInvalidFilename = 60000, /* "Invalid filename" and the like of classFilename */
  kOxMakeDir = 61200,         /* a directory could not be made */
  kOxFileNotFound = 61201,    /* the file to work with is not there */
  kOxFileAccess = 61203,      /* a file could not be read or written */
  kOxDirectoryScan = 61205,   /* a directory could not be listed */
  kOxIndexOutOfRange = 61206, /* no file of that number in a listing */
  kOxStackEmpty = 66000,
  kOxOffsetTooFar = 66001,     /* a peek below the bottom of a stack */
  kOxIndexOutOfBounds = 66003, /* no item of that number on a stack */
  kOxNoSourceFiles = -2147220504,

  /* The platform's, with their standard descriptions */
  kOxInvalidArgument = 5,          /* Invalid procedure call or argument */
  kOxOverflow = 6,                 /* Overflow */
  kOxOutOfMemory = 7,              /* Out of memory */
  kOxSubscriptOutOfRange = 9,      /* Subscript out of range */
  kOxArrayLocked = 10,             /* This array is fixed or temporarily locked */
  kOxTypeMismatch = 13,            /* Type mismatch */
  kOxLoading = 48,                 /* Error in loading DLL */
  kOxBadFileName = 52,             /* Bad file name or number */
  kOxNotFound = 53,                /* File not found */
  kOxBadFileMode = 54,             /* Bad file mode */
  kOxFileAlreadyOpen = 55,         /* File already open */
  kOxDeviceError = 57,             /* Device I/O error */
  kOxFileAlreadyExists = 58,       /* File already exists */
  kOxDiskFull = 61,                /* Disk full */
  kOxPastEndOfFile = 62,           /* Input past end of file */
  kOxBadRecordNumber = 63,         /* Bad record number */
  kOxTooManyFiles = 67,            /* Too many files */
  kOxPermissionDenied = 70,        /* Permission denied */
  kOxPathFileAccess = 75,          /* Path/File access error */
  kOxPathNotFound = 76,            /* Path not found */
  kOxObjectNotSet = 91,            /* Object variable or With block variable not set */
  kOxInvalidUseOfNull = 94,        /* Invalid use of Null */
  kOxObjectRequired = 424,         /* Object required */
  kOxCannotCreateObject = 429,     /* the class is not registered, or has no such object */
  kOxNoSuchInterface = 430,        /* Class doesn't support Automation */
  kOxMemberNotFound = 438,         /* Object doesn't support this property or method */
  kOxNamedArgumentNotFound = 448,  /* Named argument not found */
  kOxArgumentNotOptional = 449,    /* Argument not optional */
  kOxWrongNumberOfArguments = 450, /* Wrong number of arguments or invalid property assignment */
  kOxNotACollection = 451,         /* Object not a collection */
  kOxKeyInUse = 457,               /* This key is already associated with an element of this collection */
  kOxUnsupportedType = 458         /* Variable uses a type that Automation does not support */
};

#endif
