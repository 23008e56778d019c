#pragma once

/// @file
/// All of the library.

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>
#include <vynulib/Transcoding.h>
#include <vynulib/Version.h>
#include <vynulib/VynBSTR.h>
#include <vynulib/VynCharSet.h>
#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynCharSetConverterDBCS.h>
#include <vynulib/VynCharSetConverterDBCSBase.h>
#include <vynulib/VynCharSetConverterDBCSEx.h>
#include <vynulib/VynCharSetConverterEUC_CN_KR.h>
#include <vynulib/VynCharSetConverterEUC_JP.h>
#include <vynulib/VynCharSetConverterGB18030.h>
#include <vynulib/VynCharSetConverterMBCS.h>
#include <vynulib/VynCharSetConverterMBCSEx.h>
#include <vynulib/VynCharSetConverterSBCS.h>
#include <vynulib/VynCharSetConverterUTF16.h>
#include <vynulib/VynCharSetConverterUTF16Esc.h>
#include <vynulib/VynCharSetConverterUTF32.h>
#include <vynulib/VynCharSetConverterUTF8.h>
#include <vynulib/VynExport.h>
#include <vynulib/VynLazy.h>
#include <vynulib/VynPascalString.h>
#include <vynulib/VynUChar.h>
#include <vynulib/VynUCharTable.h>
#include <vynulib/VynUString.h>
#include <vynulib/VynUStringList.h>
#include <vynulib/sGB18030Range.h>
#include <vynulib/sMBCSExTable.h>
