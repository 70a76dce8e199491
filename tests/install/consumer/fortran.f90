! Adds arrays of matrices and inverts them. Fortran stores columns, so a matrix is seen transposed by the library: to
! a sum this makes no difference, and the inverse of the transpose is the transpose of the inverse.
module keslmx
    use, intrinsic :: iso_c_binding, only: c_double, c_int
    implicit none
    interface
        function keslAdd_mama_64f(src1, src1Stride0, src1Stride1, src1Stride2, src2, src2Stride0, src2Stride1, &
                src2Stride2, dst, dstStride0, dstStride1, dstStride2, width, height, count) &
                bind(c, name="keslAdd_mama_64f") result(status)
            import :: c_double, c_int
            real(c_double), intent(in) :: src1(*), src2(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int), value :: src1Stride0, src1Stride1, src1Stride2, src2Stride0, src2Stride1, src2Stride2
            integer(c_int), value :: dstStride0, dstStride1, dstStride2, width, height, count
            integer(c_int) :: status
        end function
        function keslInvert_ma_64f(src, srcStride0, srcStride1, srcStride2, buffer, dst, dstStride0, dstStride1, &
                dstStride2, widthHeight, count) &
                bind(c, name="keslInvert_ma_64f") result(status)
            import :: c_double, c_int
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: buffer(*), dst(*)
            integer(c_int), value :: srcStride0, srcStride1, srcStride2, dstStride0, dstStride1, dstStride2
            integer(c_int), value :: widthHeight, count
            integer(c_int) :: status
        end function
    end interface
end module

program fortran
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
    if (keslAdd_mama_64f(a, object, row, e, b, object, row, e, total, object, row, e, n, n, objects) /= 0) stop 1
    if (any(abs(total - (a + b)) > 0)) stop 2
    if (keslInvert_ma_64f(total, object, row, e, buffer, b, object, row, e, n, objects) /= 0) stop 3
    do k = 1, objects
        if (any(abs(matmul(total(:, :, k), b(:, :, k)) - unit) > 1e-10_c_double)) stop 4
    end do
end program
