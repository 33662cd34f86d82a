// The routines of BLAS and LAPACK that take part, by their Fortran interface.

#ifndef QUORVEL_BENCHMARKS_LAPACK_H
#define QUORVEL_BENCHMARKS_LAPACK_H

extern "C" {

using fortran_int = const int*;
using fortran_char = const char*;
using fortran_in = const double*;

char* openblas_get_corename();
char* openblas_get_config();

void dcopy_(fortran_int n, fortran_in x, fortran_int incx, double* y, fortran_int incy);
void daxpy_(fortran_int n, fortran_in a, fortran_in x, fortran_int incx, double* y, fortran_int incy);
void cblas_domatcopy(int order, int trans, int rows, int cols, double alpha, const double* a, int lda, double* b,
                     int ldb);

double ddot_(fortran_int n, fortran_in x, fortran_int incx, fortran_in y, fortran_int incy);
void dsymv_(fortran_char uplo, fortran_int n, fortran_in alpha, fortran_in a, fortran_int lda, fortran_in x,
            fortran_int incx, fortran_in beta, double* y, fortran_int incy);
void dger_(fortran_int m, fortran_int n, fortran_in alpha, fortran_in x, fortran_int incx, fortran_in y,
           fortran_int incy, double* a, fortran_int lda);
void dsyr_(fortran_char uplo, fortran_int n, fortran_in alpha, fortran_in x, fortran_int incx, double* a,
           fortran_int lda);
void dspr_(fortran_char uplo, fortran_int n, fortran_in alpha, fortran_in x, fortran_int incx, double* ap);
void dtpsv_(fortran_char uplo, fortran_char trans, fortran_char diag, fortran_int n, fortran_in ap, double* x,
            fortran_int incx);
void dtrsv_(fortran_char uplo, fortran_char trans, fortran_char diag, fortran_int n, fortran_in a, fortran_int lda,
            double* x, fortran_int incx);

void dgemm_(fortran_char transa, fortran_char transb, fortran_int m, fortran_int n, fortran_int k, fortran_in alpha,
            fortran_in a, fortran_int lda, fortran_in b, fortran_int ldb, fortran_in beta, double* c,
            fortran_int ldc);
void dsymm_(fortran_char side, fortran_char uplo, fortran_int m, fortran_int n, fortran_in alpha, fortran_in a,
            fortran_int lda, fortran_in b, fortran_int ldb, fortran_in beta, double* c, fortran_int ldc);
void dsyrk_(fortran_char uplo, fortran_char trans, fortran_int n, fortran_int k, fortran_in alpha, fortran_in a,
            fortran_int lda, fortran_in beta, double* c, fortran_int ldc);
void dsyr2k_(fortran_char uplo, fortran_char trans, fortran_int n, fortran_int k, fortran_in alpha, fortran_in a,
             fortran_int lda, fortran_in b, fortran_int ldb, fortran_in beta, double* c, fortran_int ldc);
void dtrmm_(fortran_char side, fortran_char uplo, fortran_char transa, fortran_char diag, fortran_int m,
            fortran_int n, fortran_in alpha, fortran_in a, fortran_int lda, double* b, fortran_int ldb);

void dpotrf_(fortran_char uplo, fortran_int n, double* a, fortran_int lda, int* info);
void dpotri_(fortran_char uplo, fortran_int n, double* a, fortran_int lda, int* info);
void dpptrf_(fortran_char uplo, fortran_int n, double* ap, int* info);
void dpptri_(fortran_char uplo, fortran_int n, double* ap, int* info);
void dtrtri_(fortran_char uplo, fortran_char diag, fortran_int n, double* a, fortran_int lda, int* info);
void dtptri_(fortran_char uplo, fortran_char diag, fortran_int n, double* ap, int* info);
void dgetrf_(fortran_int m, fortran_int n, double* a, fortran_int lda, int* ipiv, int* info);
void dgetri_(fortran_int n, double* a, fortran_int lda, const int* ipiv, double* work, fortran_int lwork, int* info);
void dgesv_(fortran_int n, fortran_int nrhs, double* a, fortran_int lda, int* ipiv, double* b, fortran_int ldb,
            int* info);
void dgesvx_(fortran_char fact, fortran_char trans, fortran_int n, fortran_int nrhs, double* a, fortran_int lda,
             double* af, fortran_int ldaf, int* ipiv, char* equed, double* r, double* c, double* b, fortran_int ldb,
             double* x, fortran_int ldx, double* rcond, double* ferr, double* berr, double* work, int* iwork,
             int* info);

void dgeqrf_(fortran_int m, fortran_int n, double* a, fortran_int lda, double* tau, double* work, fortran_int lwork,
             int* info);
void dgerqf_(fortran_int m, fortran_int n, double* a, fortran_int lda, double* tau, double* work, fortran_int lwork,
             int* info);
void dorgqr_(fortran_int m, fortran_int n, fortran_int k, double* a, fortran_int lda, fortran_in tau, double* work,
             fortran_int lwork, int* info);
void dormqr_(fortran_char side, fortran_char trans, fortran_int m, fortran_int n, fortran_int k, fortran_in a,
             fortran_int lda, fortran_in tau, double* c, fortran_int ldc, double* work, fortran_int lwork, int* info);
void dtrsm_(fortran_char side, fortran_char uplo, fortran_char transa, fortran_char diag, fortran_int m,
            fortran_int n, fortran_in alpha, fortran_in a, fortran_int lda, double* b, fortran_int ldb);
void dtpqrt_(fortran_int m, fortran_int n, fortran_int l, fortran_int nb, double* a, fortran_int lda, double* b,
             fortran_int ldb, double* t, fortran_int ldt, double* work, int* info);
}

namespace bench {

/// Constants with an address, as Fortran wants them.
inline constexpr double kOne = 1.0;
inline constexpr double kZero = 0.0;
inline constexpr int kUnit = 1;

}  // namespace bench

#endif
