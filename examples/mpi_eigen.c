/* Principal values and axes of 100,003 tensors, spread over the ranks of MPI: scatter, one call a rank, gather.
 *
 *     mpiexec -n 4 mpi_eigen FILE
 *
 * The results, which go to FILE, do not depend on the number of ranks, not even in their last bits. */
#include <kesl.h>
#include <keslcorex.h>
#include <math.h>
#include <mpi.h>
#include <stdio.h>
#include <stdlib.h>

enum { count = 100003, bad = 77777 };

typedef struct Tensor {
    double a[3][3];
} Tensor;
typedef struct Principal {
    double value[3], axis[3][3]; /* axis[i][j]: component i of axis j */
    int info;
} Principal;

static void* stack(size_t n, size_t size)
{
    void* p = malloc(n * size + 1);
    if (p) return p;
    fprintf(stderr, "mpi_eigen: out of memory\n");
    MPI_Abort(MPI_COMM_WORLD, 1);
    exit(1);
}

/* Tensors of any size between a micrometre and a megametre; one holds a NaN. */
static void make(Tensor* t)
{
    unsigned long seed = 1;
    for (int k = 0; k < count; ++k) {
        double unit = pow(10, k % 13 - 6);
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j <= i; ++j) {
                seed = seed * 6364136223846793005ul + 1442695040888963407ul;
                t[k].a[i][j] = t[k].a[j][i] = unit * ((double)(seed >> 11) / 9007199254740992.0 - 0.5);
            }
    }
    t[bad].a[1][0] = NAN;
}

/* The largest |A v - w v| / |A|. */
static double residual(const Tensor* t, const Principal* p)
{
    double largest = 0;
    for (int k = 0; k < count; ++k) {
        double norm = 0, r = 0;
        if (p[k].info) continue;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) {
                double x = -p[k].axis[i][j] * p[k].value[j];
                for (int l = 0; l < 3; ++l) x += t[k].a[i][l] * p[k].axis[l][j];
                r = fmax(r, fabs(x));
                norm = fmax(norm, fabs(t[k].a[i][j]));
            }
        largest = fmax(largest, r / norm);
    }
    return largest;
}

static int save(const char* path, const Principal* p)
{
    FILE* file = fopen(path, "wb");
    int good = file != NULL;
    for (int k = 0; good && k < count; ++k) /* without the bytes between the objects */
        good = fwrite(p[k].value, sizeof p[k].value, 1, file) == 1 && fwrite(p[k].axis, sizeof p[k].axis, 1, file) == 1 &&
               fwrite(&p[k].info, sizeof p[k].info, 1, file) == 1;
    if (file) good &= fclose(file) == 0;
    if (!good) perror(path);
    return good;
}

int main(int argc, char** argv)
{
    int rank, ranks, good = 1;
    MPI_Init(&argc, &argv);
    MPI_Comm_rank(MPI_COMM_WORLD, &rank);
    MPI_Comm_size(MPI_COMM_WORLD, &ranks);
    if (argc != 2) {
        if (rank == 0) fprintf(stderr, "usage: mpiexec -n RANKS mpi_eigen FILE\n");
        MPI_Finalize();
        return 1;
    }

    MPI_Datatype tensor, principal;
    MPI_Type_contiguous(sizeof(Tensor), MPI_BYTE, &tensor);
    MPI_Type_contiguous(sizeof(Principal), MPI_BYTE, &principal);
    MPI_Type_commit(&tensor);
    MPI_Type_commit(&principal);

    /* Rank r has `share[r]` objects from `first[r]` on. */
    int *share = stack((size_t)ranks, sizeof *share), *first = stack((size_t)ranks, sizeof *first);
    for (int r = 0; r < ranks; ++r) {
        share[r] = count / ranks + (r < count % ranks);
        first[r] = r ? first[r - 1] + share[r - 1] : 0;
    }
    int mine = share[rank];
    Tensor *all = rank == 0 ? stack(count, sizeof *all) : NULL, *t = stack((size_t)mine, sizeof *t);
    Principal *found = rank == 0 ? stack(count, sizeof *found) : NULL, *p = stack((size_t)mine, sizeof *p);
    int* info = stack((size_t)mine, sizeof *info);
    if (rank == 0) make(all);

    keslCoreSetNumThreads(1); /* a rank for each processor, so no threads */
    MPI_Scatterv(all, share, first, tensor, t, mine, tensor, 0, MPI_COMM_WORLD);
    /* Every stride in bytes: values and axes lie in one record. */
    ptrdiff_t result =
        kesl_eigh_64f(3, mine, t->a[0], sizeof *t, 24, 8, p->value, sizeof *p, 8, p->axis[0], sizeof *p, 24, 8, info);
    for (int k = 0; k < mine; ++k) p[k].info = info[k];
    MPI_Gatherv(p, mine, principal, found, share, first, principal, 0, MPI_COMM_WORLD);

    long failed = result, failures;
    MPI_Reduce(&failed, &failures, 1, MPI_LONG, MPI_SUM, 0, MPI_COMM_WORLD);
    if (rank == 0) {
        printf("%d tensors on %d ranks, %ld failed (info of %d is %d), residual %.1g\n", count, ranks, failures, bad,
               found[bad].info, residual(all, found));
        good = save(argv[1], found);
    }
    free(info);
    free(p);
    free(t);
    free(found);
    free(all);
    free(first);
    free(share);
    MPI_Type_free(&principal);
    MPI_Type_free(&tensor);
    MPI_Finalize();
    return !good;
}
