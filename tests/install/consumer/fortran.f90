! Adds arrays of matrices and inverts them. Fortran stores columns, so a matrix is seen transposed by the library: to
! a sum this makes no difference, and the inverse of the transpose is the transpose of the inverse.
program fortran
    use, intrinsic :: iso_c_binding, only: c_double, c_int
    use keslmx
    implicit none
    integer(c_int), parameter :: n = 4, objects = 500, e = 8, row = n * e, object = n * row
    real(c_double) :: a(n, n, objects), b(n, n, objects), total(n, n, objects), buffer(n * n + n), unit(n, n)
    integer :: i, k

    a = reshape([(modulo(i * 37, 101) / 101.0_c_double, i = 1, size(a))], shape(a))
    b = 0
    unit = 0
    do i = 1, n
        b(i, i, :) = 3
        unit(i, i) = 1
    end do
    if (keslAdd_mama_64f(a, object, row, e, b, object, row, e, total, object, row, e, n, n, objects) /= keslStatusOk) stop 1
    if (any(abs(total - (a + b)) > 0)) stop 2
    if (keslInvert_ma_64f(total, object, row, e, buffer, b, object, row, e, n, objects) /= keslStatusOk) stop 3
    do k = 1, objects
        if (any(abs(matmul(total(:, :, k), b(:, :, k)) - unit) > 1e-10_c_double)) stop 4
    end do
    if (keslInvert_ma_64f(total, object, row, e, buffer, b, object, row, e, n, 0) /= keslStatusBadCount) stop 5
end program
